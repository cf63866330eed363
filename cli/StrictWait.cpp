#include "cli/StrictWait.h"

#include <algorithm>

namespace cirrovane {

StrictWait::StrictWait(LiveSession& session)
    : session_(session),
      alarm_(session.loop().makeAlarm()),
      watch_(makeCoverageKeeper(session.machine()),
             {session.loop(), session.looks(), *session.machine().monotonicClock}) {}

bool StrictWait::isVouchedFor(bool safeToClose) {
  if (!safeToClose || session_.verdict().folders() != folders_) {
    yes_ = nullptr;
    report_ = std::nullopt;
    alarm_->clear();
  }
  if (!safeToClose) {
    return false;
  }
  if (yes_ == nullptr) {
    yes_ = std::make_shared<const int>();
    look();
  }
  return report_ && (*report_)->complete;
}

void StrictWait::look() {
  folders_ = session_.verdict().folders();
  watch_.follow(folders_);
  watch_.look([this, yes = std::weak_ptr(yes_)](const Shared<CoverageReport>& report) {
    if (yes.expired()) {
      return;
    }
    report_ = report;
    const Uptime now = session_.machine().monotonicClock->sinceBoot();
    alarm_->set(std::max(watch_.waitingLookDue() - now, Uptime(0)), [this] { look(); });
    session_.lookSoon();
  });
}

}  // namespace cirrovane
