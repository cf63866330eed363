#pragma once

#include "coordinator/LiveRules.h"
#include "coordinator/LiveVerdict.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace cirrovane {

/// What of a verdict decides whether one may leave by it.
struct VerdictSight {
  /// Absent before the first scan.
  std::optional<bool> safeToClose;
  LivenessState liveness = LivenessState::notLive;
  /// Up to when it is known to hold; absent before the first scan.
  std::optional<Uptime> confirmed;
  /// Whether it is a YES that nobody can vouch for any more.
  bool isStale = false;
};

VerdictSight sightOf(const LiveVerdict& verdict, const MonotonicClock& clock);

/// How far a YES is to be believed.
enum class YesTrust : std::uint8_t { none, first, full };

/// Believes a live YES, and of others the second of two that are far enough apart.
class YesProof {
 public:
  static constexpr std::chrono::seconds kBetweenTwo{10};

  YesTrust take(const VerdictSight& sight);
  void forget() { first_ = std::nullopt; }

 private:
  /// Up to when the first YES of a row was known to hold.
  std::optional<Uptime> first_;
};

}  // namespace cirrovane
