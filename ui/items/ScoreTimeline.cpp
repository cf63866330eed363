#include "ui/items/ScoreTimeline.h"

#include "ui/items/MonotoneCurve.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace cirrovane {
namespace {

constexpr int kFullScore = 100;
/// Between an axis and its labels.
constexpr double kLabelGap = 6;

TimeWording userWording() {
  return {QLocale(), QTimeZone::systemTimeZone(), {}};
}

QFont labelFont(int size) {
  QFont font = QGuiApplication::font();
  font.setPixelSize(size);
  return font;
}

double widthOf(const QFontMetricsF& metrics, const QString& text) {
  return std::ceil(metrics.horizontalAdvance(text));
}

/// The middle of the pixel, on which a thin line does not blur.
double crisp(double place) {
  return std::floor(place) + 0.5;
}

void addLine(QPainterPath& path, const QPointF& from, const QPointF& to) {
  path.moveTo(from);
  path.lineTo(to);
}

TimelineLabel labelAt(const QString& text, double x, double y) {
  TimelineLabel label;
  label.text = text;
  label.position = QPointF(std::round(x), std::round(y));
  return label;
}

QColor faded(QColor colour, float opacity) {
  colour.setAlphaF(opacity);
  return colour;
}

}  // namespace

std::vector<const ScanSnapshot*> oldestFirst(std::span<const ScanSnapshot> snapshots) {
  std::vector<const ScanSnapshot*> ordered;
  ordered.reserve(snapshots.size());
  for (const ScanSnapshot& snapshot : snapshots) {
    ordered.push_back(&snapshot);
  }
  std::ranges::stable_sort(ordered, {}, [](const ScanSnapshot* snapshot) { return snapshot->timestamp; });
  return ordered;
}

std::vector<ScoreAtTime> orderedScores(std::span<const ScanSnapshot> snapshots) {
  std::vector<ScoreAtTime> scores;
  scores.reserve(snapshots.size());
  for (const ScanSnapshot* snapshot : oldestFirst(snapshots)) {
    const auto score = std::clamp<std::int64_t>(snapshot->score, 0, kFullScore);
    scores.push_back({snapshot->timestamp, static_cast<int>(score)});
  }
  return scores;
}

std::vector<QPointF> plottedPoints(const std::vector<ScoreAtTime>& scores, const QRectF& area) {
  std::vector<QPointF> points;
  if (scores.empty()) {
    return points;
  }
  const TimeAxis axis{.first = scores.front().time,
                      .last = scores.back().time,
                      .firstX = area.left(),
                      .lastX = area.right(),
                      .left = area.left(),
                      .right = area.right()};
  points.reserve(scores.size());
  for (const ScoreAtTime& score : scores) {
    points.emplace_back(axis.placeOf(score.time), area.bottom() - area.height() * score.score / kFullScore);
  }
  return points;
}

std::vector<int> scoreMarks(double height, double labelHeight) {
  constexpr double kLooseness = 1.5;
  const double room = height / (labelHeight * kLooseness);
  if (room >= 4) {
    return {0, 25, 50, 75, kFullScore};
  }
  if (room >= 2) {
    return {0, 50, kFullScore};
  }
  return {0, kFullScore};
}

QString timelineDescription(const std::vector<ScoreAtTime>& scores, const TimeWording& wording) {
  if (scores.empty()) {
    return QStringLiteral("No scans yet");
  }
  const QString last = dayAndTime(scores.back().time, wording);
  if (scores.size() == 1) {
    return QStringLiteral("1 scan, %1, score %2").arg(last).arg(scores.back().score);
  }
  return QStringLiteral("%1 scans from %2 to %3, latest score %4")
      .arg(scores.size())
      .arg(dayAndTime(scores.front().time, wording), last)
      .arg(scores.back().score);
}

ScoreTimeline::ScoreTimeline(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  connect(this, &ScoreTimeline::lookChanged, this, [this] { update(); });
}

void ScoreTimeline::setSnapshots(const ScoreHistory& snapshots) {
  if (snapshots == snapshots_) {
    return;
  }
  const ScoreHistory before = std::exchange(snapshots_, snapshots);
  if (marked_ >= 0) {
    const auto same = std::ranges::find(snapshots.scores(), before.scores()[static_cast<std::size_t>(marked_)]);
    marked_ = same == snapshots.scores().end() ? -1 : static_cast<int>(same - snapshots.scores().begin());
  }
  emit snapshotsChanged();
  emit descriptionChanged();
  draw();
}

void ScoreTimeline::setLabelSize(int size) {
  if (size == labelSize_ || size <= 0) {
    return;
  }
  labelSize_ = size;
  emit labelSizeChanged();
  draw();
}

void ScoreTimeline::setPointDiameter(qreal diameter) {
  if (diameter == pointDiameter_) {
    return;
  }
  pointDiameter_ = diameter;
  emit pointDiameterChanged();
  draw();
}

void ScoreTimeline::setMarked(int number) {
  const int marked = number >= 0 && number < count() ? number : -1;
  if (marked == marked_) {
    return;
  }
  marked_ = marked;
  update();
  emit markedChanged();
}

QPointF ScoreTimeline::markedPoint() const {
  const auto number = static_cast<std::size_t>(marked_);
  return marked_ >= 0 && number < points_.size() ? points_[number] : QPointF();
}

int ScoreTimeline::nearest(qreal x) const {
  const auto distance = [x](const QPointF& point) { return std::abs(point.x() - x); };
  const auto found = std::ranges::min_element(points_, {}, distance);
  return found == points_.end() ? -1 : static_cast<int>(found - points_.begin());
}

QString ScoreTimeline::description() const {
  return timelineDescription(snapshots_.scores(), userWording());
}

QVariantList ScoreTimeline::labels() const {
  QVariantList list;
  for (const TimelineLabel& label : labels_) {
    list.append(QVariant::fromValue(label));
  }
  return list;
}

void ScoreTimeline::paint(QPainter* painter) {
  constexpr double kLineWidth = 2.5;
  QLinearGradient shade(plot_.topLeft(), plot_.bottomLeft());
  shade.setColorAt(0, faded(lineColor_, 0.5F));
  shade.setColorAt(1, faded(lineColor_, 0.05F));
  painter->strokePath(gridPath_, QPen(gridColor_, 1));
  painter->fillPath(areaPath_, shade);
  painter->strokePath(linePath_, QPen(lineColor_, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->fillPath(pointsPath_, pointColor_);
  if (marked_ >= 0) {
    paintMark(*painter);
  }
}

void ScoreTimeline::paintMark(QPainter& painter) const {
  const QPointF point = markedPoint();
  QPainterPath line;
  addLine(line, {crisp(point.x()), plot_.top()}, {crisp(point.x()), plot_.bottom()});
  painter.strokePath(line, QPen(faded(pointColor_, 0.4F), 1));
  painter.setPen(QPen(pointColor_, 2));
  painter.setBrush(lineColor_);
  painter.drawEllipse(point, pointDiameter_, pointDiameter_);
}

void ScoreTimeline::componentComplete() {
  QQuickPaintedItem::componentComplete();
  draw();
}

void ScoreTimeline::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
  QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
  if (newGeometry.size() != oldGeometry.size()) {
    draw();
  }
}

void ScoreTimeline::draw() {
  if (!isComponentComplete()) {
    return;
  }
  const QFontMetricsF metrics(labelFont(labelSize_));
  const double lineHeight = std::ceil(metrics.height());
  const double left = widthOf(metrics, QString::number(kFullScore)) + kLabelGap;
  const double top = std::ceil(lineHeight / 2);
  const double bottom = height() - lineHeight - kLabelGap;
  plot_ = QRectF(left, top, std::max(width() - left, 0.0), std::max(bottom - top, 0.0));
  // A disc at either end does not stand over the plot's edge.
  const double inset = std::min(pointDiameter_, plot_.width() / 2);
  const QRectF area = plot_.adjusted(inset, 0, -inset, 0);
  drawScores(area);
  std::vector<TimelineLabel> labels = drawAxes(area);
  update();
  emit drawingChanged();
  emit markedChanged();
  if (labels != labels_) {
    labels_ = std::move(labels);
    emit labelsChanged();
  }
}

void ScoreTimeline::drawScores(const QRectF& area) {
  points_ = plottedPoints(snapshots_.scores(), area);
  const std::vector<CurveSegment> curve = monotoneCurve(points_);
  linePath_ = curvePath(points_, curve);
  areaPath_ = cirrovane::areaPath(points_, curve, area.bottom());
  pointsPath_ = discsPath(points_, pointDiameter_ / 2);
}

std::vector<TimelineLabel> ScoreTimeline::drawAxes(const QRectF& area) {
  const QFontMetricsF metrics(labelFont(labelSize_));
  gridPath_.clear();
  std::vector<TimelineLabel> labels;
  for (const int score : scoreMarks(plot_.height(), metrics.height())) {
    const double y = area.bottom() - area.height() * score / kFullScore;
    const QString text = QString::number(score);
    labels.push_back(labelAt(text, plot_.left() - kLabelGap - widthOf(metrics, text), y - metrics.height() / 2));
    addLine(gridPath_, {plot_.left(), crisp(y)}, {plot_.right(), crisp(y)});
  }
  const std::vector<ScoreAtTime>& scores = snapshots_.scores();
  if (scores.empty()) {
    return labels;
  }
  TimeWording wording = userWording();
  wording.widthOf = [&metrics](const QString& text) { return widthOf(metrics, text); };
  const TimeAxis axis{.first = scores.front().time,
                      .last = scores.back().time,
                      .firstX = area.left(),
                      .lastX = area.right(),
                      .left = plot_.left(),
                      .right = plot_.right()};
  for (const TimeMark& mark : timeMarks(axis, wording)) {
    labels.push_back(labelAt(mark.text, mark.left, plot_.bottom() + kLabelGap));
    addLine(gridPath_, {crisp(mark.x), plot_.top()}, {crisp(mark.x), plot_.bottom()});
  }
  return labels;
}

}  // namespace cirrovane
