#pragma once

#include <QAbstractAnimation>
#include <QObject>
#include <QQmlParserStatus>
#include <QtQmlIntegration>
#include <memory>

namespace cirrovane {

/// How a damped spring answers.
struct SpringShape {
  /// Seconds that one swing would take without damping.
  double response = 0.55;
  /// The share of the damping at which it no longer swings over.
  double dampingFraction = 0.82;
};

struct SpringState {
  double value = 0;
  /// Per second.
  double velocity = 0;
};

/// The state after some seconds of being pulled to the target, however many those are.
SpringState springAfter(const SpringShape& shape, const SpringState& state, double target, double seconds);

/// Whether a value of the order of a hundred has, to the eye, arrived.
bool isSpringAtRest(const SpringState& state, double target);

/// A number that follows its target as a spring does. It works only while it moves.
class Spring : public QObject, public QQmlParserStatus {
  Q_OBJECT
  QML_ELEMENT
  Q_INTERFACES(QQmlParserStatus)
  Q_PROPERTY(qreal target READ target WRITE setTarget NOTIFY targetChanged)
  Q_PROPERTY(qreal value READ value NOTIFY valueChanged)
  Q_PROPERTY(bool isMoving READ isMoving NOTIFY isMovingChanged)
  Q_PROPERTY(qreal response MEMBER response_ NOTIFY shapeChanged)
  Q_PROPERTY(qreal dampingFraction MEMBER dampingFraction_ NOTIFY shapeChanged)
  /// Whether it moves; when not, each new target is reached at once.
  Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)

 public:
  explicit Spring(QObject* parent = nullptr);
  ~Spring() override;

  qreal target() const { return target_; }
  qreal value() const { return state_.value; }
  bool isMoving() const { return isMoving_; }
  bool isEnabled() const { return isEnabled_; }

  /// The first one, before the component is complete, is where the spring begins.
  void setTarget(qreal target);
  void setEnabled(bool enabled);

  void classBegin() override { isComplete_ = false; }
  void componentComplete() override { isComplete_ = true; }

 signals:
  void targetChanged();
  void valueChanged();
  void isMovingChanged();
  void shapeChanged();
  void enabledChanged();

 private:
  class Frames;

  void advance(double seconds);
  void arrive();
  void setMoving(bool moving);

  qreal target_ = 0;
  SpringState state_;
  qreal response_ = SpringShape{}.response;
  qreal dampingFraction_ = SpringShape{}.dampingFraction;
  bool isEnabled_ = true;
  bool isMoving_ = false;
  /// An object made in C++ is complete from the start.
  bool isComplete_ = true;
  std::unique_ptr<Frames> frames_;
};

}  // namespace cirrovane
