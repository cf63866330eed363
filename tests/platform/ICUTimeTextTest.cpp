#include "platform/linux/host/ICUTimeText.h"

#include <chrono>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AnyOf;
using testing::Eq;

/// 15 November 2026, 09:41:07 in Greenwich, where it is a winter's day.
Time morning() {
  return Time(std::chrono::sys_days(std::chrono::year(2026) / 11 / 15)) + std::chrono::hours(9) +
         std::chrono::minutes(41) + std::chrono::seconds(7);
}
Time evening() {
  return morning() + std::chrono::hours(8) + std::chrono::minutes(44);
}

/// A text that has a plain space or, as newer rules of the language want it, a narrow one that does not break.
auto withSpace(const std::string& before, const std::string& after) {
  return AnyOf(Eq(before + " " + after), Eq(before + "\xE2\x80\xAF" + after));
}

/// Environment variables for the time of a test.
class Environment {
 public:
  ~Environment() {
    for (const auto& [name, value] : before_) {
      put(name, value);
    }
  }

  void set(const std::string& name, const std::optional<std::string>& value) {
    const char* found = std::getenv(name.c_str());
    before_.emplace(name, found != nullptr ? std::optional<std::string>(found) : std::nullopt);
    put(name, value);
  }

 private:
  static void put(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }

  std::map<std::string, std::optional<std::string>> before_;
};

TEST(ICUTimeText, american_hasTwelveHours) {
  const ICUTimeText text("en_US", "UTC");
  EXPECT_THAT(text.shortTime(morning()), withSpace("9:41", "AM"));
  EXPECT_THAT(text.shortTime(evening()), withSpace("6:25", "PM"));
  EXPECT_THAT(text.timeOfDay(morning()), withSpace("9:41:07", "AM"));
  EXPECT_THAT(text.dayAndTime(evening()), withSpace("Nov 15, 6:25", "PM"));
  EXPECT_EQ(text.fileNameStamp(evening()), "2026-11-15-1825");
}

TEST(ICUTimeText, midnightAndNoon_areTwelve) {
  const ICUTimeText text("en_US", "UTC");
  const Time midnight = std::chrono::floor<std::chrono::days>(morning());
  EXPECT_THAT(text.shortTime(midnight), withSpace("12:00", "AM"));
  EXPECT_THAT(text.shortTime(midnight + std::chrono::hours(12)), withSpace("12:00", "PM"));
  EXPECT_EQ(text.fileNameStamp(midnight), "2026-11-15-0000");
}

TEST(ICUTimeText, german_hasItsOwnArrangement) {
  const ICUTimeText text("de_DE", "UTC");
  EXPECT_EQ(text.shortTime(morning()), "09:41");
  EXPECT_EQ(text.timeOfDay(morning()), "09:41:07");
  EXPECT_THAT(text.dayAndTime(evening()), AnyOf(Eq("15. Nov., 18:25"), Eq("15. Nov. um 18:25")));
  EXPECT_EQ(text.fileNameStamp(morning()), "2026-11-15-0941");
}

TEST(ICUTimeText, swedish_hasItsOwnArrangement) {
  const ICUTimeText text("sv_SE", "UTC");
  EXPECT_EQ(text.shortTime(morning()), "09:41");
  EXPECT_EQ(text.timeOfDay(evening()), "18:25:07");
  EXPECT_EQ(text.dayAndTime(evening()), "15 nov. 18:25");
}

TEST(ICUTimeText, noLanguage_isPlainEnglish) {
  for (const char* locale : {"C", "POSIX", "C.UTF-8"}) {
    const ICUTimeText text(locale, "UTC");
    EXPECT_THAT(text.shortTime(morning()), withSpace("9:41", "AM")) << locale;
    EXPECT_THAT(text.dayAndTime(evening()), withSpace("Nov 15, 6:25", "PM")) << locale;
    EXPECT_EQ(text.fileNameStamp(evening()), "2026-11-15-1825") << locale;
  }
}

TEST(ICUTimeText, systemsNameOfALocale_isUnderstood) {
  EXPECT_EQ(ICUTimeText("de_DE.UTF-8", "UTC").shortTime(morning()), "09:41");
  EXPECT_EQ(ICUTimeText("de_AT@euro", "UTC").shortTime(morning()), "09:41");
}

TEST(ICUTimeText, zones_moveTheTimeAndTheDay) {
  EXPECT_EQ(ICUTimeText("de_DE", "Europe/Stockholm").shortTime(morning()), "10:41");
  EXPECT_EQ(ICUTimeText("de_DE", "America/Los_Angeles").shortTime(morning()), "01:41");
  EXPECT_EQ(ICUTimeText("de_DE", "Asia/Kolkata").shortTime(morning()), "15:11");
  EXPECT_EQ(ICUTimeText("en_US", "Pacific/Auckland").fileNameStamp(evening()), "2026-11-16-0725");
  EXPECT_EQ(ICUTimeText("en_US", "Pacific/Pago_Pago").fileNameStamp(morning()), "2026-11-14-2241");
}

TEST(ICUTimeText, summerTime_countsForTheTimeThatIsShown) {
  const ICUTimeText text("de_DE", "Europe/Berlin");
  const Time summer = Time(std::chrono::sys_days(std::chrono::year(2026) / 7 / 1)) + std::chrono::hours(12);
  EXPECT_EQ(text.shortTime(summer), "14:00");
  EXPECT_EQ(text.shortTime(morning()), "10:41");
}

TEST(ICUTimeText, fractionOfASecond_isCutOff) {
  const ICUTimeText text("de_DE", "UTC");
  EXPECT_EQ(text.timeOfDay(morning() + std::chrono::microseconds(999'999)), "09:41:07");
}

TEST(ICUTimeText, timeBefore1970_isFine) {
  EXPECT_EQ(ICUTimeText("en_US", "UTC").fileNameStamp(Time(std::chrono::seconds(-60))), "1969-12-31-2359");
}

TEST(ICUTimeText, unknownZone_isGreenwich) {
  EXPECT_EQ(ICUTimeText("de_DE", "Nowhere/Land").shortTime(morning()), "09:41");
}

TEST(ICUTimeText, unknownLanguage_stillTellsTheTime) {
  const ICUTimeText text("xx_XX", "UTC");
  EXPECT_THAT(text.shortTime(morning()), testing::HasSubstr("41"));
  EXPECT_EQ(text.fileNameStamp(morning()), "2026-11-15-0941");
}

TEST(ICUTimeText, usersLocale_isTheFirstThatIsSetOfThree) {
  Environment environment;
  const auto time = [] { return ICUTimeText("", "UTC").dayAndTime(evening()); };
  environment.set("LC_ALL", std::nullopt);
  environment.set("LC_TIME", std::nullopt);
  environment.set("LANG", "sv_SE.UTF-8");
  EXPECT_EQ(time(), "15 nov. 18:25");
  environment.set("LC_TIME", "en_US.UTF-8");
  EXPECT_THAT(time(), withSpace("Nov 15, 6:25", "PM"));
  environment.set("LC_ALL", "sv_SE.UTF-8");
  EXPECT_EQ(time(), "15 nov. 18:25");
  environment.set("LC_ALL", "");
  EXPECT_THAT(time(), withSpace("Nov 15, 6:25", "PM"));
}

TEST(ICUTimeText, usersLocaleUnset_isPlainEnglish) {
  Environment environment;
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    environment.set(variable, std::nullopt);
  }
  EXPECT_THAT(ICUTimeText("", "UTC").shortTime(morning()), withSpace("9:41", "AM"));
}

TEST(ICUTimeText, usersZone_isTheOneOfTheSystem) {
  Environment environment;
  environment.set("TZ", "Asia/Kolkata");
  EXPECT_EQ(ICUTimeText("de_DE").shortTime(morning()), "15:11");
  environment.set("TZ", "Europe/Stockholm");
  EXPECT_EQ(ICUTimeText("de_DE").shortTime(morning()), "10:41");
}

}  // namespace
}  // namespace cirrovane::test
