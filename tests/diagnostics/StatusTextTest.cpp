#include "diagnostics/StatusText.h"
#include "tests/support/FakeAmountText.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

TEST(ByteCountText, absentSize_isUnknown) {
  EXPECT_EQ(byteCountText(test::FakeAmountText(), std::optional<std::uint64_t>()), "Unknown");
  EXPECT_EQ(byteCountText(test::FakeAmountText(), std::optional<std::int64_t>()), "Unknown");
}

TEST(ByteCountText, presentSize_isTheSystemsText) {
  EXPECT_EQ(byteCountText(test::FakeAmountText(), std::optional<std::uint64_t>(0)), "0 bytes");
  EXPECT_EQ(byteCountText(test::FakeAmountText(), std::optional<std::uint64_t>(2'000'000)), "2000000 bytes");
  EXPECT_EQ(byteCountText(test::FakeAmountText(), std::optional<std::int64_t>(-2'000'000)), "-2000000 bytes");
}

TEST(ByteCountText, moreThanAFileCanHold_isThatMuch) {
  EXPECT_EQ(byteCountText(test::FakeAmountText(), std::optional(std::numeric_limits<std::uint64_t>::max())),
            "9223372036854775807 bytes");
}

TEST(LoadText, beforeAnySample_isDashes) {
  EXPECT_EQ(loadText(SystemStatusSnapshot::empty()), "- / - / -");
}

TEST(LoadText, values_haveTwoDigits) {
  SystemStatusSnapshot status;
  status.load1m = 1.52;
  status.load5m = 1.31;
  status.load15m = 1.2;
  EXPECT_EQ(loadText(status), "1.52 / 1.31 / 1.20");
  status.load1m = 12.345678;
  EXPECT_EQ(loadText(status), "12.35 / 1.31 / 1.20");
}

TEST(LoadText, absentValue_isADashInItsPlace) {
  SystemStatusSnapshot status;
  status.load1m = 0.81;
  status.load15m = 0.64;
  EXPECT_EQ(loadText(status), "0.81 / - / 0.64");
}

TEST(CPUUsageText, hasOneDigitOrIsUnknown) {
  SystemStatusSnapshot status;
  EXPECT_EQ(cpuUsageText(status), "Unknown");
  status.cpuUsagePercent = 17.83;
  EXPECT_EQ(cpuUsageText(status), "17.8%");
  status.cpuUsagePercent = 0;
  EXPECT_EQ(cpuUsageText(status), "0.0%");
}

TEST(TemperatureText, hasOneDigitOrAsksForASensor) {
  SystemStatusSnapshot status;
  EXPECT_EQ(temperatureText(status), "Unknown (optional sensor required)");
  status.cpuTemperatureC = 61.84;
  EXPECT_EQ(temperatureText(status), "61.8 C");
  status.cpuTemperatureC = -5;
  EXPECT_EQ(temperatureText(status), "-5.0 C");
}

TEST(MemoryUsageRatio, isUsedOfTotal) {
  SystemStatusSnapshot status;
  status.memoryUsedBytes = 85;
  status.memoryTotalBytes = 100;
  EXPECT_EQ(memoryUsageRatio(status), 0.85);
  status.memoryUsedBytes = 0;
  EXPECT_EQ(memoryUsageRatio(status), 0);
  status.memoryUsedBytes = 150;
  EXPECT_EQ(memoryUsageRatio(status), 1.5);
}

TEST(MemoryUsageRatio, withoutEither_isAbsent) {
  SystemStatusSnapshot status;
  status.memoryTotalBytes = 100;
  EXPECT_EQ(memoryUsageRatio(status), std::nullopt);
  status.memoryUsedBytes = 5;
  status.memoryTotalBytes = 0;
  EXPECT_EQ(memoryUsageRatio(status), std::nullopt);
}

TEST(BatteryText, isAnIntegerOrUnknown) {
  SystemStatusSnapshot status;
  EXPECT_EQ(batteryText(status), "Unknown");
  status.batteryPercent = 87;
  EXPECT_EQ(batteryText(status), "87%");
  status.batteryPercent = 0;
  EXPECT_EQ(batteryText(status), "0%");
}

TEST(ChargingText, isYesNoOrUnknown) {
  SystemStatusSnapshot status;
  EXPECT_EQ(chargingText(status), "Unknown");
  status.batteryCharging = true;
  EXPECT_EQ(chargingText(status), "Yes");
  status.batteryCharging = false;
  EXPECT_EQ(chargingText(status), "No");
}

TEST(LowPowerModeText, isOnOrOff) {
  SystemStatusSnapshot status;
  EXPECT_EQ(lowPowerModeText(status), "Off");
  status.lowPowerMode = true;
  EXPECT_EQ(lowPowerModeText(status), "On");
}

TEST(ReachabilityText, isOneOfThree) {
  SystemStatusSnapshot status;
  EXPECT_EQ(reachabilityText(status), "Unknown");
  status.networkReachable = true;
  EXPECT_EQ(reachabilityText(status), "Reachable");
  status.networkReachable = false;
  EXPECT_EQ(reachabilityText(status), "Not Reachable");
}

}  // namespace
}  // namespace cirrovane
