#include "platform/macos/plain/FrameworkNumbers.h"

#include <cmath>

namespace cirrovane {
namespace {

/// 2^63 is the first number beyond, and, unlike the last one inside, has an exact double. False for no number at all.
bool fitsInteger(double number) {
  return number >= -0x1p63 && number < 0x1p63;
}

}  // namespace

std::optional<std::int64_t> wholeNumberOf(double number) {
  const bool isWhole = fitsInteger(number) && std::trunc(number) == number;
  return isWhole ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
}

std::optional<ThermalState> thermalStateOf(std::int64_t number) {
  switch (number) {
    case 0:
      return ThermalState::nominal;
    case 1:
      return ThermalState::fair;
    case 2:
      return ThermalState::serious;
    case 3:
      return ThermalState::critical;
    default:
      return std::nullopt;
  }
}

NotificationAuthorization notificationAuthorizationOf(std::int64_t number) {
  switch (number) {
    case 0:
      return NotificationAuthorization::notDetermined;
    case 1:
      return NotificationAuthorization::denied;
    default:
      return NotificationAuthorization::authorized;
  }
}

LoginItemState loginItemStateOf(std::int64_t number) {
  switch (number) {
    case 1:
      return LoginItemState::on;
    case 2:
      return LoginItemState::needsApproval;
    default:
      return LoginItemState::off;
  }
}

}  // namespace cirrovane
