#include "base/ISO8601.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

Time secondsSince1970(std::int64_t count) {
  return Time(seconds(count));
}

TEST(ISO8601Text, knownTimes_areWrittenInUTC) {
  EXPECT_EQ(iso8601Text(secondsSince1970(0)), "1970-01-01T00:00:00Z");
  EXPECT_EQ(iso8601Text(secondsSince1970(1'794'766'870)), "2026-11-15T18:21:10Z");
  EXPECT_EQ(iso8601Text(secondsSince1970(951'827'696)), "2000-02-29T12:34:56Z");
  EXPECT_EQ(iso8601Text(secondsSince1970(-62'167'219'200)), "0000-01-01T00:00:00Z");
  EXPECT_EQ(iso8601Text(secondsSince1970(253'402'300'799)), "9999-12-31T23:59:59Z");
}

TEST(ISO8601Text, fractionOfASecond_isRoundedDown) {
  EXPECT_EQ(iso8601Text(Time(microseconds(1'999'999))), "1970-01-01T00:00:01Z");
  EXPECT_EQ(iso8601Text(Time(microseconds(-1))), "1969-12-31T23:59:59Z");
  EXPECT_EQ(iso8601Text(Time(microseconds(-1'000'000))), "1969-12-31T23:59:59Z");
  EXPECT_EQ(iso8601Text(Time(microseconds(-1'000'001))), "1969-12-31T23:59:58Z");
}

TEST(ISO8601Text, beyondTheYearsOfTheForm_givesTheNearestTime) {
  EXPECT_EQ(iso8601Text(Time::max()), "9999-12-31T23:59:59Z");
  EXPECT_EQ(iso8601Text(secondsSince1970(253'402'300'800)), "9999-12-31T23:59:59Z");
  EXPECT_EQ(iso8601Text(Time::min()), "0000-01-01T00:00:00Z");
  EXPECT_EQ(iso8601Text(secondsSince1970(-62'167'219'201)), "0000-01-01T00:00:00Z");
}

TEST(TimeFromISO8601, everyWholeSecond_comesBack) {
  std::mt19937_64 random(1);
  for (int count = 0; count < 20'000; ++count) {
    const auto time = secondsSince1970(-62'167'219'200 + static_cast<std::int64_t>(random() % 315'569'520'000U));
    ASSERT_EQ(timeFromISO8601(iso8601Text(time)), time) << iso8601Text(time);
  }
}

TEST(TimeFromISO8601, fraction_isAcceptedAndDropped) {
  const Time expected = secondsSince1970(1'794'766'870);
  for (const char* text : {"2026-11-15T18:21:10.0Z", "2026-11-15T18:21:10.999Z", "2026-11-15T18:21:10.999999999999Z",
                           "2026-11-15T20:21:10.5+02:00"}) {
    EXPECT_EQ(timeFromISO8601(text), expected) << text;
  }
  EXPECT_EQ(timeFromISO8601("1969-12-31T23:59:59.9Z"), secondsSince1970(-1));
}

TEST(TimeFromISO8601, otherTimeZones_areTakenOff) {
  const Time expected = secondsSince1970(1'794'766'870);
  for (const char* text :
       {"2026-11-15T18:21:10Z", "2026-11-15T18:21:10+00:00", "2026-11-15T18:21:10-00:00", "2026-11-15T20:21:10+02:00",
        "2026-11-15T20:21:10+0200", "2026-11-15T20:21:10+02", "2026-11-15T12:51:10-05:30", "2026-11-15T12:51:10-0530",
        "2026-11-16T00:21:10+06", "2026-11-16T18:20:10+23:59"}) {
    EXPECT_EQ(timeFromISO8601(text), expected) << text;
  }
}

TEST(TimeFromISO8601, daysAndTimesThatDoNotExist_areNone) {
  for (const char* text :
       {"2026-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "2026-04-31T00:00:00Z", "2026-13-01T00:00:00Z",
        "2026-00-01T00:00:00Z", "2026-01-00T00:00:00Z", "2026-01-32T00:00:00Z", "2026-01-01T24:00:00Z",
        "2026-01-01T00:60:00Z", "2026-01-01T00:00:60Z", "2026-01-01T00:00:00+24:00", "2026-01-01T00:00:00+02:60"}) {
    EXPECT_FALSE(timeFromISO8601(text)) << text;
  }
  EXPECT_TRUE(timeFromISO8601("2000-02-29T23:59:59Z"));
  EXPECT_TRUE(timeFromISO8601("2028-02-29T23:59:59Z"));
}

TEST(TimeFromISO8601, anyOtherText_isNone) {
  for (const std::string_view text : {std::string_view(""),
                                      std::string_view("now"),
                                      std::string_view("2026-11-15"),
                                      std::string_view("2026-11-15T18:21:10"),
                                      std::string_view("2026-11-15 18:21:10Z"),
                                      std::string_view("2026-11-15t18:21:10Z"),
                                      std::string_view("2026-11-15T18:21:10z"),
                                      std::string_view(" 2026-11-15T18:21:10Z"),
                                      std::string_view("2026-11-15T18:21:10Z "),
                                      std::string_view("2026-11-15T18:21:10Z\n"),
                                      std::string_view("2026-11-15T18:21:10ZZ"),
                                      std::string_view("2026-11-15T18:21:10.Z"),
                                      std::string_view("2026-11-15T18:21:10,5Z"),
                                      std::string_view("2026-11-15T18:21Z"),
                                      std::string_view("26-11-15T18:21:10Z"),
                                      std::string_view("+2026-11-15T18:21:10Z"),
                                      std::string_view("-2026-11-15T18:21:10Z"),
                                      std::string_view("12026-11-15T18:21:10Z"),
                                      std::string_view("2026-1-15T18:21:10Z"),
                                      std::string_view("2026-11-15T8:21:10Z"),
                                      std::string_view("2026/11/15T18:21:10Z"),
                                      std::string_view("2026-11-15T18:21:1xZ"),
                                      std::string_view("2026-11-15T18:21:-1Z"),
                                      std::string_view("2026-11-15T18:21:10+"),
                                      std::string_view("2026-11-15T18:21:10+2"),
                                      std::string_view("2026-11-15T18:21:10+02:"),
                                      std::string_view("2026-11-15T18:21:10+02:0"),
                                      std::string_view("2026-11-15T18:21:10+020"),
                                      std::string_view("2026-11-15T18:21:10+02:00Z"),
                                      std::string_view("2026-11-15T18:21:10Z\0", 21),
                                      std::string_view("20261115T182110Z"),
                                      std::string_view("\xD9\xA2"
                                                       "026-11-15T18:21:10Z")}) {
    EXPECT_FALSE(timeFromISO8601(text)) << text;
  }
}

TEST(TimeFromISO8601, everyBeginningOfAText_isNone) {
  const std::string text = "2026-11-15T18:21:10.123+02:00";
  for (std::size_t length = 0; length < text.size(); ++length) {
    const std::string beginning = text.substr(0, length);
    // The text of a zone may end after its hours.
    EXPECT_EQ(timeFromISO8601(beginning).has_value(), beginning.ends_with("+02")) << beginning;
  }
}

}  // namespace
}  // namespace cirrovane::test
