#include "ui/items/ScoreRing.h"

#include "ui/items/ColourMesh.h"
#include "ui/items/NormalShare.h"

#include <QConicalGradient>
#include <QPainterPath>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace cirrovane {
namespace {

constexpr float kFaint = 0.65F;
constexpr double kGlow = 0.35;
/// What stays free between the round ends of a ring that is not whole.
constexpr double kGap = 3;

QColor faded(QColor colour, double opacity) {
  colour.setAlphaF(colour.alphaF() * static_cast<float>(opacity));
  return colour;
}

double middleRadius(const RingLook& look) {
  return (look.diameter - look.strokeWidth) / 2;
}

/// The middle of the stroke, from the top clockwise.
QPainterPath arcOf(const QPointF& centre, double radius, double share) {
  const QRectF square(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
  QPainterPath path;
  if (share >= 1) {
    path.addEllipse(square);
  } else {
    path.arcMoveTo(square, 90);
    path.arcTo(square, 90, -360 * share);
  }
  return path;
}

/// The colours around the circle. Where they jump from the end's back to the start's there is nothing drawn; a whole
/// ring has no such place, so there they flow back.
QBrush brushOf(const QPointF& centre, const RingColours& colours, double share) {
  // Qt counts the angles anticlockwise.
  QConicalGradient gradient(centre, 90);
  const auto colourAt = [&](double place, const QColor& colour) { gradient.setColorAt(1 - place, colour); };
  colourAt(0, colours.start);
  if (share >= 1) {
    constexpr double kTurn = 0.86;
    colourAt(kTurn, colours.end);
    colourAt(1, colours.start);
  } else {
    const double jump = (1 + share) / 2;
    constexpr double kStep = 0.0005;
    colourAt(jump, between(colours.start, colours.end, jump));
    colourAt(std::min(jump + kStep, 1.0), colours.start);
    colourAt(1, colours.start);
  }
  return gradient;
}

void stroke(QPainter& painter, const QPainterPath& path, const QBrush& brush, double width) {
  painter.strokePath(path, QPen(brush, width, Qt::SolidLine, Qt::RoundCap));
}

/// Lines of growing width, each so opaque that together they are as opaque as the glow at each distance.
void paintGlow(QPainter& painter, const QPainterPath& arc, const RingLook& look) {
  const double reach = glowReach(look.shadowRadius);
  constexpr double kWidest = 1.5;
  const int steps = static_cast<int>(std::ceil(reach / kWidest));
  const double step = steps > 0 ? reach / steps : 0;
  double beyond = 0;
  for (int number = steps; number >= 0; --number) {
    const double distance = look.strokeWidth / 2 + step * number;
    const double opacity = kGlow * glowOpacity(look.strokeWidth, look.shadowRadius, std::max(distance - step / 2, 0.0));
    const double added = 1 - (1 - opacity) / (1 - beyond);
    stroke(painter, arc, faded(look.colours.glow, std::max(added, 0.0)), 2 * distance);
    beyond = opacity;
  }
}

}  // namespace

RingColours ringColours(Tone tone, const SignalColours& signalColours) {
  switch (tone) {
    case Tone::Good:
      return {faded(signalColours.green, kFaint), signalColours.green, signalColours.green};
    case Tone::Caution:
      return {faded(signalColours.yellow, kFaint), signalColours.orange, signalColours.yellow};
    default:
      break;
  }
  return {signalColours.orange, signalColours.red, signalColours.red};
}

double glowReach(double shadowRadius) {
  // The radius of a shadow is twice the deviation of its blur; beyond three deviations nothing is left to see.
  return std::max(shadowRadius, 0.0) * 1.5;
}

double glowOpacity(double strokeWidth, double shadowRadius, double distance) {
  const double deviation = shadowRadius / 2;
  const double half = strokeWidth / 2;
  if (deviation <= 0) {
    return distance <= half ? 1 : 0;
  }
  return normalShare((half - distance) / deviation) - normalShare((-half - distance) / deviation);
}

double drawnShare(const RingLook& look, double share) {
  const double around = 2 * std::numbers::pi * middleRadius(look);
  if (share >= 1 || around <= 0) {
    return std::clamp(share, 0.0, 1.0);
  }
  return std::clamp(share, 0.0, std::max(1 - (look.strokeWidth + kGap) / around, 0.0));
}

void paintRing(QPainter& painter, const QPointF& centre, const RingLook& look, double share) {
  const double radius = middleRadius(look);
  if (radius <= 0 || look.strokeWidth <= 0) {
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  // From the top layer to the lowest: each goes below what is there.
  painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
  const double drawn = drawnShare(look, share);
  constexpr double kLeast = 0.0005;
  if (drawn > kLeast) {
    const QPainterPath arc = arcOf(centre, radius, drawn);
    stroke(painter, arc, brushOf(centre, look.colours, drawn), look.strokeWidth);
    paintGlow(painter, arc, look);
  }
  stroke(painter, arcOf(centre, radius, 1), look.track, look.strokeWidth);
}

ScoreRing::ScoreRing(QQuickItem* parent) : QQuickPaintedItem(parent) {
  connect(this, &ScoreRing::lookChanged, this, [this] { update(); });
}

void ScoreRing::setProgress(qreal progress) {
  if (progress == progress_ || !std::isfinite(progress)) {
    return;
  }
  const QString before = number();
  progress_ = progress;
  update();
  emit progressChanged();
  if (number() != before) {
    emit numberChanged();
  }
}

QString ScoreRing::number() const {
  return QString::number(std::lround(std::clamp(progress_, 0.0, 100.0)));
}

qreal ScoreRing::glowMargin() const {
  return std::ceil(glowReach(shadowRadius_));
}

QString ScoreRing::spoken(const QString& caption, int score) {
  return QStringLiteral("%1 %2").arg(caption).arg(score);
}

void ScoreRing::paint(QPainter* painter) {
  const RingLook look{.diameter = std::min(width(), height()) - 2 * glowMargin(),
                      .strokeWidth = strokeWidth_,
                      .shadowRadius = shadowRadius_,
                      .colours = ringColours(tone_, {green_, yellow_, orange_, red_}),
                      .track = track_};
  paintRing(*painter, boundingRect().center(), look, progress_ / 100);
}

}  // namespace cirrovane
