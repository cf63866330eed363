#include "platform/macos/plain/FrameworkNumbers.h"

#include <limits>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(TimeOf, seconds_keepTheirFraction) {
  EXPECT_EQ(timeOf(0), Time());
  EXPECT_EQ(timeOf(1200.25), Time(std::chrono::microseconds(1'200'250'000)));
}

TEST(TimeOf, dateBefore1970_isRoundedToThePast) {
  EXPECT_EQ(timeOf(-0.5), Time(std::chrono::microseconds(-500'000)));
  EXPECT_EQ(timeOf(-0.00000025), Time(std::chrono::microseconds(-1)));
}

TEST(TimeOf, distantDatesOfFoundation_fit) {
  EXPECT_TRUE(timeOf(64'092'211'200));
  EXPECT_TRUE(timeOf(-62'135'596'800));
}

TEST(TimeOf, dateThatNoClockShows_isAbsent) {
  for (const double seconds : {1e13, -1e13, kInfinity, -kInfinity, kNaN}) {
    EXPECT_EQ(timeOf(seconds), std::nullopt) << seconds;
  }
}

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

}  // namespace
}  // namespace cirrovane
