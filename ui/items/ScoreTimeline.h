#pragma once

#include "base/Shared.h"
#include "stores/ScanSnapshot.h"
#include "ui/items/TimeMarks.h"

#include <QColor>
#include <QMetaType>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>
#include <QQuickPaintedItem>
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

/// Some snapshots, oldest first; those of the same time stay in their order.
std::vector<const ScanSnapshot*> oldestFirst(std::span<const ScanSnapshot> snapshots);

/// The scores of some snapshots, in that order. What a file claims beyond 0 to 100 counts as the nearer end.
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

  friend bool operator==(const TimelineLabel&, const TimelineLabel&) = default;
};

/// A chart of scores over time but for its labels, which it places. Made anew only when the scores, the size or the
/// labels' font change.
class ScoreTimeline : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::ScoreHistory snapshots READ snapshots WRITE setSnapshots NOTIFY snapshotsChanged)
  /// Of the labels, in pixels.
  Q_PROPERTY(int labelSize READ labelSize WRITE setLabelSize NOTIFY labelSizeChanged)
  /// Of a point's disc.
  Q_PROPERTY(qreal pointDiameter READ pointDiameter WRITE setPointDiameter NOTIFY pointDiameterChanged)
  /// Within the axes.
  Q_PROPERTY(QRectF plot READ plot NOTIFY drawingChanged)
  Q_PROPERTY(QColor gridColor MEMBER gridColor_ NOTIFY lookChanged)
  Q_PROPERTY(QColor lineColor MEMBER lineColor_ NOTIFY lookChanged)
  Q_PROPERTY(QColor pointColor MEMBER pointColor_ NOTIFY lookChanged)
  /// Of each axis, a `timelineLabel` each.
  Q_PROPERTY(QVariantList labels READ labels NOTIFY labelsChanged)
  Q_PROPERTY(QString description READ description NOTIFY descriptionChanged)
  Q_PROPERTY(int count READ count NOTIFY snapshotsChanged)
  /// The number of the scan that is pointed out, from the oldest, which is 0; -1 for none. It stays with its scan.
  Q_PROPERTY(int marked READ marked WRITE setMarked NOTIFY markedChanged)
  /// Where that scan stands; meaningless without one.
  Q_PROPERTY(QPointF markedPoint READ markedPoint NOTIFY markedChanged)

 public:
  explicit ScoreTimeline(QQuickItem* parent = nullptr);

  const ScoreHistory& snapshots() const { return snapshots_; }
  void setSnapshots(const ScoreHistory& snapshots);
  int labelSize() const { return labelSize_; }
  void setLabelSize(int size);
  qreal pointDiameter() const { return pointDiameter_; }
  void setPointDiameter(qreal diameter);

  const QRectF& plot() const { return plot_; }
  const QPainterPath& gridPath() const { return gridPath_; }
  const QPainterPath& linePath() const { return linePath_; }
  const QPainterPath& areaPath() const { return areaPath_; }
  const QPainterPath& pointsPath() const { return pointsPath_; }
  QVariantList labels() const;
  QString description() const;
  int count() const { return static_cast<int>(snapshots_.scores().size()); }
  int marked() const { return marked_; }
  /// A number beyond the scans marks none.
  void setMarked(int number);
  QPointF markedPoint() const;

  /// The number of the scan that stands nearest to a place along the chart; -1 without scans.
  Q_INVOKABLE int nearest(qreal x) const;

  void paint(QPainter* painter) override;

 signals:
  void snapshotsChanged();
  void labelSizeChanged();
  void pointDiameterChanged();
  void drawingChanged();
  void labelsChanged();
  void lookChanged();
  void descriptionChanged();
  void markedChanged();

 protected:
  void componentComplete() override;
  void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

 private:
  void draw();
  void drawScores(const QRectF& area);
  void paintMark(QPainter& painter) const;
  std::vector<TimelineLabel> drawAxes(const QRectF& area);

  ScoreHistory snapshots_;
  int labelSize_ = 11;
  qreal pointDiameter_ = 5;
  QColor gridColor_;
  QColor lineColor_;
  QColor pointColor_;
  QRectF plot_;
  QPainterPath gridPath_;
  QPainterPath linePath_;
  QPainterPath areaPath_;
  QPainterPath pointsPath_;
  std::vector<QPointF> points_;
  int marked_ = -1;
  std::vector<TimelineLabel> labels_;
};

}  // namespace cirrovane
