#include "ui/items/Spring.h"

#include <cmath>
#include <numbers>

namespace cirrovane {

SpringState springAfter(const SpringShape& shape, const SpringState& state, double target, double seconds) {
  const double frequency = 2 * std::numbers::pi / shape.response;
  const double decay = shape.dampingFraction * frequency;
  const double away = state.value - target;
  const double squared = 1 - shape.dampingFraction * shape.dampingFraction;
  constexpr double kNearlyCritical = 1e-9;
  if (squared > kNearlyCritical) {
    const double swing = frequency * std::sqrt(squared);
    const double cosine = std::cos(swing * seconds);
    const double sine = std::sin(swing * seconds);
    const double left = std::exp(-decay * seconds);
    return {target + left * (away * cosine + (state.velocity + decay * away) / swing * sine),
            left * (state.velocity * cosine - (decay * state.velocity + frequency * frequency * away) / swing * sine)};
  }
  if (squared < -kNearlyCritical) {
    // Two decays of their own pace; the form with hyperbolic functions would overflow after a long time.
    const double spread = frequency * std::sqrt(-squared);
    const double slow = spread - decay;
    const double fast = -spread - decay;
    const double slowPart = (state.velocity - fast * away) / (2 * spread);
    const double slowLeft = slowPart * std::exp(slow * seconds);
    const double fastLeft = (away - slowPart) * std::exp(fast * seconds);
    return {target + slowLeft + fastLeft, slow * slowLeft + fast * fastLeft};
  }
  const double push = state.velocity + frequency * away;
  const double left = std::exp(-frequency * seconds);
  return {target + left * (away + push * seconds), left * (state.velocity - frequency * push * seconds)};
}

bool isSpringAtRest(const SpringState& state, double target) {
  return std::abs(state.value - target) < 0.02 && std::abs(state.velocity) < 0.2;
}

/// Tells a spring of each frame, in the rhythm in which the window draws.
class Spring::Frames : public QAbstractAnimation {
 public:
  explicit Frames(Spring& spring) : spring_(spring) {}

  int duration() const override { return -1; }
  void restart() {
    latest_ = 0;
    start();
  }

 protected:
  void updateCurrentTime(int milliseconds) override {
    const int passed = milliseconds - latest_;
    latest_ = milliseconds;
    if (passed > 0) {
      spring_.advance(passed / 1000.0);
    }
  }

 private:
  Spring& spring_;
  int latest_ = 0;
};

Spring::Spring(QObject* parent) : QObject(parent), frames_(std::make_unique<Frames>(*this)) {}
Spring::~Spring() = default;

void Spring::setTarget(qreal target) {
  if (target == target_ || !std::isfinite(target)) {
    return;
  }
  target_ = target;
  emit targetChanged();
  // A spring without pull or damping would never come to rest.
  const bool canSettle = response_ > 0 && dampingFraction_ > 0;
  if (!isEnabled_ || !isComplete_ || !canSettle) {
    arrive();
  } else {
    setMoving(true);
  }
}

void Spring::setEnabled(bool enabled) {
  if (enabled == isEnabled_) {
    return;
  }
  isEnabled_ = enabled;
  emit enabledChanged();
  if (!enabled) {
    arrive();
  }
}

void Spring::advance(double seconds) {
  const SpringState next = springAfter({response_, dampingFraction_}, state_, target_, seconds);
  if (isSpringAtRest(next, target_)) {
    arrive();
  } else {
    state_ = next;
    emit valueChanged();
  }
}

void Spring::arrive() {
  const bool changes = state_.value != target_;
  state_ = {target_, 0};
  if (changes) {
    emit valueChanged();
  }
  setMoving(false);
}

void Spring::setMoving(bool moving) {
  if (moving == isMoving_) {
    return;
  }
  isMoving_ = moving;
  if (moving) {
    frames_->restart();
  } else {
    frames_->stop();
  }
  emit isMovingChanged();
}

}  // namespace cirrovane
