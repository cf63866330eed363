#pragma once

#include <string_view>

namespace cirrovane {

// The names of the user's settings and of what the application remembers across launches.

/// Truth value: whether notifications of a changed verdict are wanted.
inline constexpr std::string_view kGuardrailNotificationsEnabledKey = "guardrailNotificationsEnabled";
/// Truth value: the verdict that the user was last told, or would have been told.
inline constexpr std::string_view kLastKnownSafeToCloseKey = "lastKnownSafeToClose";
/// Text: version and build of the latest launch.
inline constexpr std::string_view kLastLaunchedBuildKey = "Cirrovane.lastLaunchedBuildToken";

}  // namespace cirrovane
