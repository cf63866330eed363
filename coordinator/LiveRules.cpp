#include "coordinator/LiveRules.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;

/// A pause after the last full scan: `share` times its duration, within bounds.
struct PauseRule {
  ScanCause cause;
  int share;
  Uptime shortest;
  Uptime longest;
};

/// So that scans cost a loaded machine at most 2 % of its time, where nothing hurries.
constexpr int kSparingShare = 50;
constexpr Uptime kLongestPause = 30min;
constexpr Uptime kNoPause{0};
/// A scan that takes longer is not repeated by every cycle.
constexpr Uptime kLongScan = 1800ms;

constexpr std::array kPauseRules = {
    PauseRule{ScanCause::loss, 1, kNoPause, kLongestPause},
    PauseRule{ScanCause::turnToYes, 5, kNoPause, kLongestPause},
    PauseRule{ScanCause::waitingLive, kSparingShare, 90s, kLongestPause},
    PauseRule{ScanCause::waitingNotLive, kSparingShare, 5s, kLongestPause},
    PauseRule{ScanCause::cycleWhileLive, kSparingShare, kNoPause, kLongestPause},
};

}  // namespace

std::string_view rawValue(LivenessState state) {
  switch (state) {
    case LivenessState::live:
      return "live";
    case LivenessState::catchingUp:
      return "catchingUp";
    case LivenessState::notLive:
      break;
  }
  return "notLive";
}

std::string_view livenessLabel(LivenessState state) {
  switch (state) {
    case LivenessState::live:
      return "Live";
    case LivenessState::catchingUp:
      return "Catching up";
    case LivenessState::notLive:
      break;
  }
  return "Not live";
}

Uptime scanDue(ScanCause cause, const LastScan& last) {
  const bool isShort = cause == ScanCause::cycleWhileLive && last.duration < kLongScan;
  if (!last.end || isShort) {
    return kNoPause;
  }
  const auto* rule = std::ranges::find(kPauseRules, cause, &PauseRule::cause);
  return *last.end + std::clamp(last.duration * rule->share, rule->shortest, rule->longest);
}

Uptime turnedCycleDue(Uptime turnedAt, std::optional<Uptime> lastCycleBegan) {
  const Uptime held = turnedAt + kVerdictHold;
  return lastCycleBegan ? std::max(held, *lastCycleBegan + kBetweenCycles) : held;
}

}  // namespace cirrovane
