#include "diagnostics/StatusText.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

std::string bytesText(std::uint64_t bytes) {
  return byteCountText(bytes);
}

TEST(ByteCountText, nothing_isZeroKB) {
  EXPECT_EQ(bytesText(0), "Zero KB");
}

TEST(ByteCountText, belowAGigabyte_isInMegabytesWithOneDigit) {
  EXPECT_EQ(bytesText(1), "0 MB");
  EXPECT_EQ(bytesText(500'000), "0.5 MB");
  EXPECT_EQ(bytesText(1'000'000), "1 MB");
  EXPECT_EQ(bytesText(1'240'000), "1.2 MB");
  EXPECT_EQ(bytesText(10'000'000), "10 MB");
  EXPECT_EQ(bytesText(100'000'000), "100 MB");
  EXPECT_EQ(bytesText(512'300'000), "512.3 MB");
  EXPECT_EQ(bytesText(999'949'999), "999.9 MB");
}

TEST(ByteCountText, whatWouldRoundTo1000Megabytes_isAGigabyte) {
  EXPECT_EQ(bytesText(999'950'000), "1 GB");
  EXPECT_EQ(bytesText(999'999'999), "1 GB");
}

TEST(ByteCountText, fromAGigabyte_isInGigabytesWithTwoDigits) {
  EXPECT_EQ(bytesText(1'000'000'000), "1 GB");
  EXPECT_EQ(bytesText(1'230'000'000), "1.23 GB");
  EXPECT_EQ(bytesText(1'500'000'000), "1.5 GB");
  EXPECT_EQ(bytesText(17'179'869'184), "17.18 GB");
  EXPECT_EQ(bytesText(200'000'000'000), "200 GB");
  EXPECT_EQ(bytesText(494'384'795'648), "494.38 GB");
  EXPECT_EQ(bytesText(2'000'000'000'000), "2000 GB");
  EXPECT_EQ(bytesText(std::numeric_limits<std::uint64_t>::max()), "18446744073.71 GB");
}

TEST(ByteCountText, absentSize_isUnknown) {
  EXPECT_EQ(byteCountText(std::optional<std::uint64_t>()), "Unknown");
  EXPECT_EQ(byteCountText(std::optional<std::int64_t>()), "Unknown");
}

TEST(ByteCountText, presentSize_isItsText) {
  EXPECT_EQ(byteCountText(std::optional<std::uint64_t>(0)), "Zero KB");
  EXPECT_EQ(byteCountText(std::optional<std::uint64_t>(2'000'000)), "2 MB");
  EXPECT_EQ(byteCountText(std::optional<std::int64_t>(0)), "Zero KB");
  EXPECT_EQ(byteCountText(std::optional<std::int64_t>(2'000'000)), "2 MB");
}

TEST(ByteCountText, negativeSize_hasASign) {
  EXPECT_EQ(byteCountText(std::optional<std::int64_t>(-2'000'000)), "-2 MB");
  EXPECT_EQ(byteCountText(std::optional(std::numeric_limits<std::int64_t>::min())), "-9223372036.85 GB");
}

std::string uptime(double days, double hours, double minutes, double seconds = 0) {
  return durationText(((days * 24 + hours) * 60 + minutes) * 60 + seconds);
}

TEST(DurationText, belowAMinute_isZeroMinutes) {
  EXPECT_EQ(durationText(0), "0m");
  EXPECT_EQ(durationText(59.9), "0m");
}

TEST(DurationText, unitsThatAreZero_areLeftOut) {
  EXPECT_EQ(uptime(0, 0, 1), "1m");
  EXPECT_EQ(uptime(0, 0, 59, 59), "59m");
  EXPECT_EQ(uptime(0, 1, 0), "1h");
  EXPECT_EQ(uptime(1, 0, 0), "1d");
  EXPECT_EQ(uptime(2, 0, 5), "2d 5m");
  EXPECT_EQ(uptime(400, 0, 0), "400d");
}

TEST(DurationText, twoUnits_areBothShown) {
  EXPECT_EQ(uptime(0, 1, 1), "1h 1m");
  EXPECT_EQ(uptime(0, 23, 59, 59), "23h 59m");
  EXPECT_EQ(uptime(3, 4, 0), "3d 4h");
  EXPECT_EQ(durationText(273'600), "3d 4h");
}

TEST(DurationText, minutesBelowDaysAndHours_roundTheHours) {
  EXPECT_EQ(uptime(3, 4, 29), "3d 4h");
  EXPECT_EQ(uptime(3, 4, 30), "3d 5h");
  EXPECT_EQ(uptime(3, 23, 45), "4d");
}

TEST(DurationText, whatIsNoDuration_isZeroMinutes) {
  EXPECT_EQ(durationText(-100), "0m");
  EXPECT_EQ(durationText(std::numeric_limits<double>::quiet_NaN()), "0m");
}

TEST(DurationText, endlessTime_isStillText) {
  EXPECT_TRUE(durationText(std::numeric_limits<double>::infinity()).find('d') != std::string::npos);
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
