#pragma once

#include "platform/LoginItem.h"
#include "platform/NotificationCenter.h"
#include "platform/SystemInformation.h"

#include <cstdint>
#include <optional>

namespace cirrovane {

// What the frameworks' bare numbers mean.

/// A whole number; absent for a fraction, and beyond 64 bits.
std::optional<std::int64_t> wholeNumberOf(double number);

/// Absent for a number that nobody knew when this was written.
std::optional<ThermalState> thermalStateOf(std::int64_t number);

/// A number that nobody knew when this was written is an answer that the user has given: the question is not asked
/// again, and the system itself drops what it does not want to show.
NotificationAuthorization notificationAuthorizationOf(std::int64_t number);

/// Of an application's own service. The system finds none before the first request, which is as good as off; so is a
/// number that nobody knew when this was written.
LoginItemState loginItemStateOf(std::int64_t number);

}  // namespace cirrovane
