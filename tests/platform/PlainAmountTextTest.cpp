#include "platform/linux/host/PlainAmountText.h"

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

std::string bytesText(std::int64_t bytes) {
  return PlainAmountText().byteCount(bytes);
}

TEST(PlainByteCount, nothing_isZeroKB) {
  EXPECT_EQ(bytesText(0), "Zero KB");
}

TEST(PlainByteCount, belowAGigabyte_isInMegabytesWithOneDigit) {
  EXPECT_EQ(bytesText(1), "0 MB");
  EXPECT_EQ(bytesText(500'000), "0.5 MB");
  EXPECT_EQ(bytesText(1'000'000), "1 MB");
  EXPECT_EQ(bytesText(1'240'000), "1.2 MB");
  EXPECT_EQ(bytesText(10'000'000), "10 MB");
  EXPECT_EQ(bytesText(100'000'000), "100 MB");
  EXPECT_EQ(bytesText(512'300'000), "512.3 MB");
  EXPECT_EQ(bytesText(999'949'999), "999.9 MB");
}

TEST(PlainByteCount, whatWouldRoundTo1000Megabytes_isAGigabyte) {
  EXPECT_EQ(bytesText(999'950'000), "1 GB");
  EXPECT_EQ(bytesText(999'999'999), "1 GB");
}

TEST(PlainByteCount, fromAGigabyte_isInGigabytesWithTwoDigits) {
  EXPECT_EQ(bytesText(1'000'000'000), "1 GB");
  EXPECT_EQ(bytesText(1'230'000'000), "1.23 GB");
  EXPECT_EQ(bytesText(1'500'000'000), "1.5 GB");
  EXPECT_EQ(bytesText(17'179'869'184), "17.18 GB");
  EXPECT_EQ(bytesText(200'000'000'000), "200 GB");
  EXPECT_EQ(bytesText(494'384'795'648), "494.38 GB");
  EXPECT_EQ(bytesText(2'000'000'000'000), "2000 GB");
  EXPECT_EQ(bytesText(std::numeric_limits<std::int64_t>::max()), "9223372036.85 GB");
}

TEST(PlainByteCount, negativeSize_hasASign) {
  EXPECT_EQ(bytesText(-2'000'000), "-2 MB");
  EXPECT_EQ(bytesText(std::numeric_limits<std::int64_t>::min()), "-9223372036.85 GB");
}

std::string durationText(double seconds) {
  return PlainAmountText().duration(seconds);
}

std::string uptime(double days, double hours, double minutes, double seconds = 0) {
  return durationText(((days * 24 + hours) * 60 + minutes) * 60 + seconds);
}

TEST(PlainDuration, belowAMinute_isZeroMinutes) {
  EXPECT_EQ(durationText(0), "0m");
  EXPECT_EQ(durationText(59.9), "0m");
}

TEST(PlainDuration, unitsThatAreZero_areLeftOut) {
  EXPECT_EQ(uptime(0, 0, 1), "1m");
  EXPECT_EQ(uptime(0, 0, 59, 59), "59m");
  EXPECT_EQ(uptime(0, 1, 0), "1h");
  EXPECT_EQ(uptime(1, 0, 0), "1d");
  EXPECT_EQ(uptime(2, 0, 5), "2d 5m");
  EXPECT_EQ(uptime(400, 0, 0), "400d");
}

TEST(PlainDuration, twoUnits_areBothShown) {
  EXPECT_EQ(uptime(0, 1, 1), "1h 1m");
  EXPECT_EQ(uptime(0, 23, 59, 59), "23h 59m");
  EXPECT_EQ(uptime(3, 4, 0), "3d 4h");
  EXPECT_EQ(durationText(273'600), "3d 4h");
}

TEST(PlainDuration, minutesBelowDaysAndHours_roundTheHours) {
  EXPECT_EQ(uptime(3, 4, 29), "3d 4h");
  EXPECT_EQ(uptime(3, 4, 30), "3d 5h");
  EXPECT_EQ(uptime(3, 23, 45), "4d");
}

TEST(PlainDuration, whatIsNoDuration_isZeroMinutes) {
  EXPECT_EQ(durationText(-100), "0m");
  EXPECT_EQ(durationText(std::numeric_limits<double>::quiet_NaN()), "0m");
}

TEST(PlainDuration, endlessTime_isStillText) {
  EXPECT_TRUE(durationText(std::numeric_limits<double>::infinity()).find('d') != std::string::npos);
}

}  // namespace
}  // namespace cirrovane
