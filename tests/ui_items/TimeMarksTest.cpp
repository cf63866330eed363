#include "ui/items/TimeMarks.h"

#include <QDateTime>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const QTimeZone kUTC(0);

TimeWording wordingIn(const QTimeZone& zone) {
  return {QLocale(QLocale::English, QLocale::UnitedStates), zone,
          [](const QString& text) { return 6.5 * static_cast<double>(text.size()); }};
}

Time at(const char* text, const QTimeZone& zone = kUTC) {
  QDateTime dateTime = QDateTime::fromString(QString::fromLatin1(text), QStringLiteral("yyyy-MM-dd hh:mm"));
  dateTime.setTimeZone(zone);
  return Time(std::chrono::milliseconds(dateTime.toMSecsSinceEpoch()));
}

TimeAxis axisOf(Time first, Time last, double width) {
  return {.first = first, .last = last, .firstX = 35, .lastX = 35 + width, .left = 30, .right = 40 + width};
}

std::vector<std::string> textsOf(const std::vector<TimeMark>& marks) {
  std::vector<std::string> texts;
  for (const TimeMark& mark : marks) {
    texts.push_back(mark.text.toStdString());
  }
  return texts;
}

std::vector<std::string> textsFrom(const char* first, const char* last, double width) {
  return textsOf(timeMarks(axisOf(at(first), at(last), width), wordingIn(kUTC)));
}

/// What is wrong with the marks of an axis; empty when nothing is.
std::string problemOf(const TimeAxis& axis, const std::vector<TimeMark>& marks) {
  if (marks.empty()) {
    return "none";
  }
  for (std::size_t index = 0; index < marks.size(); ++index) {
    const TimeMark& mark = marks[index];
    const std::string name = mark.text.toStdString();
    if (mark.time < axis.first || mark.time > axis.last || mark.x < axis.firstX - 1e-6 || mark.x > axis.lastX + 1e-6) {
      return name + " lies outside";
    }
    if (mark.text.isEmpty() || mark.left < axis.left || mark.right > axis.right) {
      return name + " has no room";
    }
    if (index > 0 && mark.left - marks[index - 1].right < kLeastLabelDistance) {
      return name + " overlaps";
    }
    if (index > 0 && mark.x - marks[index - 1].x < kLeastMarkDistance) {
      return name + " is too close";
    }
  }
  return {};
}

TEST(TimeMarks, anyRange_neverOverlaps) {
  std::mt19937_64 random(1986);
  const std::vector<QTimeZone> zones = {kUTC, QTimeZone(19800), QTimeZone(-34200), QTimeZone("America/New_York"),
                                        QTimeZone("Australia/Lord_Howe")};
  for (int round = 0; round < 6000; ++round) {
    const auto share = [&] { return static_cast<double>(random() % 1'000'000) / 1e6; };
    // From a minute to two years, each order of magnitude as often.
    const double seconds = 60 * std::pow(2.0 * 365.25 * 1440, share());
    const Time first = at("2024-01-01 00:00") + std::chrono::seconds(random() % 100'000'000);
    const Time last = first + std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6));
    const TimeAxis axis = axisOf(first, last, 150 + 900 * share());
    const QTimeZone& zone = zones[random() % zones.size()];
    if (zone.isValid()) {
      ASSERT_EQ(problemOf(axis, timeMarks(axis, wordingIn(zone))), "") << "round " << round << ", " << seconds << " s";
    }
  }
}

TEST(TimeMarks, wideAxis_isNotLeftBare) {
  for (double seconds = 120; seconds < 2.0 * 365 * 86400; seconds *= 1.13) {
    const Time first = at("2026-03-03 07:13");
    const TimeAxis axis = axisOf(first, first + std::chrono::seconds(static_cast<std::int64_t>(seconds)), 900);
    EXPECT_GE(timeMarks(axis, wordingIn(kUTC)).size(), 3U) << seconds;
  }
}

TEST(TimeMarks, minutes_areRound) {
  EXPECT_THAT(textsFrom("2026-11-15 09:38", "2026-11-15 09:43", 450),
              ElementsAre("9:38 AM", "9:39 AM", "9:40 AM", "9:41 AM", "9:42 AM", "9:43 AM"));
  EXPECT_THAT(textsFrom("2026-11-15 09:03", "2026-11-15 10:17", 450),
              ElementsAre("9:15 AM", "9:30 AM", "9:45 AM", "10:00 AM", "10:15 AM"));
}

TEST(TimeMarks, hoursAcrossMidnight_nameTheDay) {
  EXPECT_THAT(textsFrom("2026-11-15 13:00", "2026-11-16 13:30", 450),
              ElementsAre("6:00 PM", "Nov 16", "6:00 AM", "12:00 PM"));
}

TEST(TimeMarks, days_areNamedByMonthAndDay) {
  EXPECT_THAT(textsFrom("2026-11-15 10:00", "2026-11-19 18:00", 450),
              ElementsAre("Nov 16", "Nov 17", "Nov 18", "Nov 19"));
}

TEST(TimeMarks, weeks_beginOnMonday) {
  EXPECT_THAT(textsFrom("2026-10-30 10:00", "2026-11-24 18:00", 380),
              ElementsAre("Nov 2", "Nov 9", "Nov 16", "Nov 23"));
}

TEST(TimeMarks, months_areNamedAndJanuaryIsTheYear) {
  EXPECT_THAT(textsFrom("2026-10-20 10:00", "2027-03-05 18:00", 480), ElementsAre("Nov", "Dec", "2027", "Feb", "Mar"));
  EXPECT_THAT(textsFrom("2025-11-01 00:00", "2027-11-01 00:00", 380), ElementsAre("2026", "Jul", "2027", "Jul"));
}

TEST(TimeMarks, dayBeforeMonth_whereTheLocaleHasItSo) {
  TimeWording wording = wordingIn(kUTC);
  wording.locale = QLocale(QLocale::English, QLocale::UnitedKingdom);
  EXPECT_EQ(dayAndTime(at("2026-11-15 18:25"), wording), "15 Nov, 18:25");
  EXPECT_EQ(dayAndTime(at("2026-11-15 18:25"), wordingIn(kUTC)), "Nov 15, 6:25 PM");
}

TEST(TimeMarks, noLanguageSet_showsNoSeconds) {
  TimeWording wording = wordingIn(kUTC);
  wording.locale = QLocale::c();
  EXPECT_TRUE(dayAndTime(at("2026-11-15 18:25"), wording).endsWith(QStringLiteral(", 18:25")));
}

TEST(TimeMarks, zone_decidesWhatIsRound) {
  const QTimeZone india(19800);
  const TimeAxis axis = axisOf(at("2026-11-15 13:40", india), at("2026-11-15 18:10", india), 450);
  EXPECT_THAT(textsOf(timeMarks(axis, wordingIn(india))),
              ElementsAre("2:00 PM", "3:00 PM", "4:00 PM", "5:00 PM", "6:00 PM"));
}

TEST(TimeMarks, changeOfTheClocks_countsNoHourTwice) {
  const QTimeZone zone("America/New_York");
  if (!zone.isValid()) {
    GTEST_SKIP() << "This machine knows no time zones by name";
  }
  const TimeAxis spring = axisOf(at("2026-03-08 00:30", zone), at("2026-03-08 05:30", zone), 450);
  EXPECT_THAT(textsOf(timeMarks(spring, wordingIn(zone))), ElementsAre("1:00 AM", "3:00 AM", "4:00 AM", "5:00 AM"));
  const TimeAxis days = axisOf(at("2026-03-07 12:00", zone), at("2026-03-10 12:00", zone), 450);
  EXPECT_THAT(textsOf(timeMarks(days, wordingIn(zone))), ElementsAre("Mar 8", "Mar 9", "Mar 10"));
}

TEST(TimeMarks, noSpan_isOneMarkInTheMiddle) {
  const Time time = at("2026-11-15 18:25");
  const TimeAxis axis = axisOf(time, time, 400);
  const std::vector<TimeMark> marks = timeMarks(axis, wordingIn(kUTC));
  ASSERT_EQ(marks.size(), 1U);
  EXPECT_EQ(marks[0].x, 235);
  EXPECT_EQ(marks[0].text, "Nov 15, 6:25 PM");
  EXPECT_EQ((marks[0].left + marks[0].right) / 2, 235);
}

TEST(TimeMarks, noRoundTimeWithin_marksTheBegin) {
  const Time first = at("2026-11-15 18:25") + std::chrono::seconds(10);
  const TimeAxis axis = axisOf(first, first + std::chrono::seconds(20), 400);
  const std::vector<TimeMark> marks = timeMarks(axis, wordingIn(kUTC));
  ASSERT_EQ(marks.size(), 1U);
  EXPECT_EQ(marks[0].x, 35);
  EXPECT_EQ(problemOf(axis, marks), "");
}

TEST(TimeMarks, datesOfAHostileFile_areMarkedToo) {
  const auto check = [](const TimeAxis& axis) {
    const std::vector<TimeMark> marks = timeMarks(axis, wordingIn(kUTC));
    EXPECT_EQ(problemOf(axis, marks), "");
  };
  check(axisOf(at("0001-01-01 00:00"), at("9999-12-31 23:59"), 380));
  check(axisOf(at("0001-01-01 00:00"), at("0040-12-31 23:59"), 900));
  check(axisOf(Time::min(), Time::max(), 900));
  check(axisOf(at("2026-01-01 00:00"), Time::max(), 380));
}

TEST(TimeMarks, noWidth_isNoTrouble) {
  const TimeAxis axis = axisOf(at("2026-11-15 09:00"), at("2026-11-15 18:00"), 0);
  EXPECT_THAT(timeMarks(axis, wordingIn(kUTC)), Not(IsEmpty()));
}

}  // namespace
}  // namespace cirrovane::test
