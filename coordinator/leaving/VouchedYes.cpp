#include "coordinator/leaving/VouchedYes.h"

#include <algorithm>
#include <utility>

namespace cirrovane {
namespace {

bool haveSameGaps(const CoverageReport& lhs, const CoverageReport& rhs) {
  return lhs.gaps == rhs.gaps && lhs.gapCounts == rhs.gapCounts && lhs.notExamined == rhs.notExamined;
}

}  // namespace

VouchedYes::VouchedYes(std::shared_ptr<const CoverageKeeper> keeper, const VouchingEnvironment& environment,
                       std::function<void()> found)
    : environment_(environment),
      found_(std::move(found)),
      watch_(std::move(keeper), {environment.main, environment.looking, environment.monotonicClock}) {}

VouchedYes::~VouchedYes() {
  environment_.alarm.clear();
}

bool VouchedYes::isVouchedFor(bool safeToClose, const std::vector<WatchFolder>& folders) {
  if (!safeToClose || folders != folders_) {
    forget();
    folders_ = folders;
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

void VouchedYes::forget() {
  yes_ = nullptr;
  report_ = std::nullopt;
  isLasting_ = false;
  environment_.alarm.clear();
}

void VouchedYes::look() {
  watch_.follow(folders_);
  watch_.look([this, yes = std::weak_ptr(yes_)](const Shared<CoverageReport>& report) {
    if (!yes.expired()) {
      take(report);
    }
  });
}

void VouchedYes::take(const Shared<CoverageReport>& report) {
  isLasting_ = report_ && hasLastingGapsOnly(*report) && haveSameGaps(**report_, *report);
  report_ = report;
  const Uptime now = environment_.monotonicClock.sinceBoot();
  environment_.alarm.set(std::max(watch_.waitingLookDue() - now, Uptime(0)), [this] { look(); });
  found_();
}

}  // namespace cirrovane
