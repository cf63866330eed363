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

/// Text: "liquid" or "classic".
inline constexpr std::string_view kVisualStyleKey = "visualStyle";
/// Truth value: whether anything on screen moves by itself.
inline constexpr std::string_view kMotionEnabledKey = "motionEnabled";
/// Truth value: whether the machine is kept awake while uploads are pending.
inline constexpr std::string_view kKeepAwakeWhilePendingKey = "keepAwakeWhileUploadsPend";
/// Text: the charge in percent below which it is not, on battery power.
inline constexpr std::string_view kLeastBatteryPercentKey = "keepAwakeLeastBatteryPercent";
/// Truth value: whether the user is asked before a shutdown while it is not safe.
inline constexpr std::string_view kAskBeforeShutdownKey = "askBeforeShutdown";

/// Truth value: whether the dashboard explains its terms.
inline constexpr std::string_view kShowTerminologyOnDashboardKey = "showTerminologyOnDashboard";

}  // namespace cirrovane
