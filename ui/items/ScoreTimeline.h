#pragma once

#include "base/Shared.h"
#include "stores/ScanSnapshot.h"
#include "ui/items/TimeMarks.h"

#include <QMetaType>
#include <QPointF>
#include <QQuickItem>
#include <QRectF>
#include <QString>
#include <QVariantList>
#include <QtQmlIntegration>
#include <span>
#include <vector>

namespace cirrovane {

struct ScoreAtTime {
  Time time;
  /// 0 to 100.
  int score = 0;

  friend bool operator==(const ScoreAtTime&, const ScoreAtTime&) = default;
};

/// The scores of some snapshots, oldest first; those of the same time stay in their order. What a file claims beyond 0
/// to 100 counts as the nearer end.
std::vector<ScoreAtTime> orderedScores(std::span<const ScanSnapshot> snapshots);

/// Where the scores lie in the area: x by time, y by score from 0 at its lower edge to 100 at its upper one. What has
/// no span of time stands in the middle.
std::vector<QPointF> plottedPoints(const std::vector<ScoreAtTime>& scores, const QRectF& area);

/// The scores to mark on an axis of that height with labels of that one.
std::vector<int> scoreMarks(double height, double labelHeight);

/// A timeline in words: its range, its latest score, the number of scans.
QString timelineDescription(const std::vector<ScoreAtTime>& scores, const TimeWording& wording);

/// Scores on their way from a view model to a timeline; copies share them.
class ScoreHistory {
  Q_GADGET
  QML_VALUE_TYPE(scoreHistory)

 public:
  ScoreHistory() = default;
  explicit ScoreHistory(std::span<const ScanSnapshot> snapshots) : scores_(orderedScores(snapshots)) {}

  /// Oldest first.
  const std::vector<ScoreAtTime>& scores() const { return *scores_; }

  friend bool operator==(const ScoreHistory&, const ScoreHistory&) = default;

 private:
  Shared<std::vector<ScoreAtTime>> scores_;
};

/// A text beside an axis and its upper left corner.
class TimelineLabel {
  Q_GADGET
  QML_VALUE_TYPE(timelineLabel)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(QPointF position MEMBER position)

 public:
  QString text;
  QPointF position;
};

/// What a chart of scores over time consists of, for an item of its size. Made anew only when the scores, the size or
/// the labels' font change.
class ScoreTimeline : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::ScoreHistory snapshots READ snapshots WRITE setSnapshots NOTIFY snapshotsChanged)
  /// Of the labels, in pixels.
  Q_PROPERTY(int labelSize READ labelSize WRITE setLabelSize NOTIFY labelSizeChanged)
  /// Of a point's disc.
  Q_PROPERTY(qreal pointDiameter READ pointDiameter WRITE setPointDiameter NOTIFY pointDiameterChanged)
  /// Within the axes.
  Q_PROPERTY(QRectF plot READ plot NOTIFY drawingChanged)
  Q_PROPERTY(QString gridPath READ gridPath NOTIFY drawingChanged)
  Q_PROPERTY(QString linePath READ linePath NOTIFY drawingChanged)
  Q_PROPERTY(QString areaPath READ areaPath NOTIFY drawingChanged)
  Q_PROPERTY(QString pointsPath READ pointsPath NOTIFY drawingChanged)
  /// Of each axis, a `timelineLabel` each.
  Q_PROPERTY(QVariantList labels READ labels NOTIFY drawingChanged)
  Q_PROPERTY(QString description READ description NOTIFY descriptionChanged)

 public:
  explicit ScoreTimeline(QQuickItem* parent = nullptr);

  const ScoreHistory& snapshots() const { return snapshots_; }
  void setSnapshots(const ScoreHistory& snapshots);
  int labelSize() const { return labelSize_; }
  void setLabelSize(int size);
  qreal pointDiameter() const { return pointDiameter_; }
  void setPointDiameter(qreal diameter);

  const QRectF& plot() const { return plot_; }
  const QString& gridPath() const { return gridPath_; }
  const QString& linePath() const { return linePath_; }
  const QString& areaPath() const { return areaPath_; }
  const QString& pointsPath() const { return pointsPath_; }
  const QVariantList& labels() const { return labels_; }
  QString description() const;

 signals:
  void snapshotsChanged();
  void labelSizeChanged();
  void pointDiameterChanged();
  void drawingChanged();
  void descriptionChanged();

 protected:
  void componentComplete() override;
  void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

 private:
  void draw();
  void drawScores(const QRectF& area);
  void drawAxes(const QRectF& area);
  void addLabel(const QString& text, double x, double y);

  ScoreHistory snapshots_;
  int labelSize_ = 11;
  qreal pointDiameter_ = 5;
  QRectF plot_;
  QString gridPath_;
  QString linePath_;
  QString areaPath_;
  QString pointsPath_;
  QVariantList labels_;
};

}  // namespace cirrovane
