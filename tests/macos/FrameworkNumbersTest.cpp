#include "platform/macos/plain/FrameworkNumbers.h"

#include <limits>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(WholeNumberOf, wholeNumbers_areThemselves) {
  EXPECT_EQ(wholeNumberOf(100), 100);
  EXPECT_EQ(wholeNumberOf(-0x1p63), std::numeric_limits<std::int64_t>::min());
}

TEST(WholeNumberOf, fractionOrBeyond64Bits_isAbsent) {
  for (const double number : {99.5, 0x1p63, -0x1p64, kInfinity, kNaN}) {
    EXPECT_EQ(wholeNumberOf(number), std::nullopt) << number;
  }
}

TEST(ThermalStateOf, knownNumbers_areTheirStates) {
  EXPECT_EQ(thermalStateOf(0), ThermalState::nominal);
  EXPECT_EQ(thermalStateOf(1), ThermalState::fair);
  EXPECT_EQ(thermalStateOf(2), ThermalState::serious);
  EXPECT_EQ(thermalStateOf(3), ThermalState::critical);
}

TEST(ThermalStateOf, unknownNumber_isAbsent) {
  EXPECT_EQ(thermalStateOf(4), std::nullopt);
  EXPECT_EQ(thermalStateOf(-1), std::nullopt);
}

TEST(NotificationAuthorizationOf, onlyZero_meansThatTheUserWasNeverAsked) {
  EXPECT_EQ(notificationAuthorizationOf(0), NotificationAuthorization::notDetermined);
  EXPECT_EQ(notificationAuthorizationOf(1), NotificationAuthorization::denied);
  for (const std::int64_t number : {2, 3, 4, -1}) {
    EXPECT_EQ(notificationAuthorizationOf(number), NotificationAuthorization::authorized) << number;
  }
}

TEST(LoginItemStateOf, serviceThatTheSystemNeverHeardOf_isOff) {
  EXPECT_EQ(loginItemStateOf(1), LoginItemState::on);
  EXPECT_EQ(loginItemStateOf(2), LoginItemState::needsApproval);
  for (const std::int64_t number : {0, 3, 4, -1}) {
    EXPECT_EQ(loginItemStateOf(number), LoginItemState::off) << number;
  }
}

}  // namespace
}  // namespace cirrovane
