#include "ui/viewmodels/LoginItemSetting.h"

#include "ui/viewmodels/Text.h"

namespace cirrovane {

QString LoginItemSetting::note() const {
  if (failure_.isEmpty() && state_ == LoginItemState::needsApproval) {
    return QStringLiteral("Not yet: allow Cirrovane in System Settings > General > Login Items.");
  }
  return failure_;
}

QString LoginItemSetting::action() const {
  const bool leadsThere = isAvailable_ && state_ == LoginItemState::needsApproval && loginItem_.hasSystemSettings();
  return leadsThere ? QStringLiteral("Open System Settings") : QString();
}

void LoginItemSetting::setOn(bool isOn) {
  const std::optional<Failure> failure = loginItem_.setOn(isOn);
  readState();
  if (failure && isAvailable_) {
    failure_ = QStringLiteral("This could not be changed. ") + toDisplay(failure->message);
  }
  emit changed();
}

void LoginItemSetting::act() {
  loginItem_.openSystemSettings();
}

void LoginItemSetting::reread() {
  readState();
  emit changed();
}

void LoginItemSetting::readState() {
  const Result<LoginItemState> state = loginItem_.state();
  isAvailable_ = static_cast<bool>(state);
  state_ = state ? *state : LoginItemState::off;
  failure_ = state ? QString() : toDisplay(state.message());
}

}  // namespace cirrovane
