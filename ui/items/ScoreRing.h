#pragma once

#include "ui/viewmodels/Tone.h"

#include <QColor>
#include <QPainter>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The colours that a ring's are made of.
struct SignalColours {
  QColor green;
  QColor yellow;
  QColor orange;
  QColor red;
};

/// A ring's colours at its start and at its end, and of its glow.
struct RingColours {
  QColor start;
  QColor end;
  QColor glow;
};

/// Those of a good tone, of caution, and of all others, which say danger.
RingColours ringColours(Tone tone, const SignalColours& signalColours);

/// How far a glow can be seen beyond the edge of what glows.
double glowReach(double shadowRadius);

/// How opaque the glow of a line is at a distance from the middle of that line: 0 to 1.
double glowOpacity(double strokeWidth, double shadowRadius, double distance);

/// What a ring looks like. The diameter is that of the stroke's outer edge.
struct RingLook {
  double diameter = 0;
  double strokeWidth = 0;
  double shadowRadius = 0;
  RingColours colours;
  QColor track;
};

/// The share of the circle that is drawn for a share that is meant: short of the whole, a gap between the round ends
/// stays in sight.
double drawnShare(const RingLook& look, double share);

/// Draws the ring for a share of 0 to 1 onto what is still empty.
void paintRing(QPainter& painter, const QPointF& centre, const RingLook& look, double share);

/// The circle of a score with its glow, for which the item is larger than the ring by `glowMargin` on each side.
class ScoreRing : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  /// The score that is shown, on its way from one to another; beyond 0 to 100 it counts as the nearer end.
  Q_PROPERTY(qreal progress READ progress WRITE setProgress NOTIFY progressChanged)
  /// The progress as a whole number.
  Q_PROPERTY(QString number READ number NOTIFY numberChanged)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone_ NOTIFY lookChanged)
  Q_PROPERTY(qreal strokeWidth MEMBER strokeWidth_ NOTIFY lookChanged)
  Q_PROPERTY(qreal shadowRadius MEMBER shadowRadius_ NOTIFY lookChanged)
  Q_PROPERTY(qreal glowMargin READ glowMargin NOTIFY lookChanged)
  Q_PROPERTY(QColor track MEMBER track_ NOTIFY lookChanged)
  Q_PROPERTY(QColor green MEMBER green_ NOTIFY lookChanged)
  Q_PROPERTY(QColor yellow MEMBER yellow_ NOTIFY lookChanged)
  Q_PROPERTY(QColor orange MEMBER orange_ NOTIFY lookChanged)
  Q_PROPERTY(QColor red MEMBER red_ NOTIFY lookChanged)

 public:
  explicit ScoreRing(QQuickItem* parent = nullptr);

  qreal progress() const { return progress_; }
  void setProgress(qreal progress);
  QString number() const;
  qreal glowMargin() const;

  /// What a dial says to a screen reader: "Upload Trust 92".
  Q_INVOKABLE static QString spoken(const QString& caption, int score);

  void paint(QPainter* painter) override;

 signals:
  void progressChanged();
  void numberChanged();
  void lookChanged();

 private:
  qreal progress_ = 0;
  Tone tone_ = Tone::Neutral;
  qreal strokeWidth_ = 0;
  qreal shadowRadius_ = 0;
  QColor track_;
  QColor green_;
  QColor yellow_;
  QColor orange_;
  QColor red_;
};

}  // namespace cirrovane
