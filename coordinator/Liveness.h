#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cirrovane {

/// How the report stands to what happens in the watched folders.
enum class LivenessState : std::uint8_t {
  /// Every change that the system told longer than a second ago is in the report.
  live,
  /// Something told is not in the report yet.
  catchingUp,
  /// Changes are not told, or not believed.
  notLive,
};

/// The state's name in JSON.
std::string_view rawValue(LivenessState state);
/// The state in words for people: "Live", "Catching up", "Not live".
std::string_view livenessLabel(LivenessState state);

struct Liveness {
  LivenessState state = LivenessState::notLive;
  /// Why it is not live, in a sentence for people; empty while it is.
  std::string reason;
  /// How often a full scan found what the watch should have told and had not.
  std::int64_t disagreements = 0;

  friend bool operator==(const Liveness&, const Liveness&) = default;
};

}  // namespace cirrovane
