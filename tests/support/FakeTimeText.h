#pragma once

#include "platform/TimeText.h"

#include <array>
#include <chrono>
#include <iomanip>
#include <sstream>
#include <string>

namespace cirrovane::test {

/// Times as an American in Greenwich would write them.
class FakeTimeText final : public TimeText {
 public:
  std::string shortTime(Time time) const override { return clockText(time, ""); }
  std::string timeOfDay(Time time) const override {
    return clockText(time, ":" + padded(timeOf(time).seconds().count()));
  }
  std::string dayAndTime(Time time) const override {
    static constexpr std::array kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::chrono::year_month_day date = dateOf(time);
    return std::string(kMonths.at(unsigned{date.month()} - 1)) + " " + std::to_string(unsigned{date.day()}) + ", " +
           shortTime(time);
  }
  std::string fileNameStamp(Time time) const override {
    const std::chrono::year_month_day date = dateOf(time);
    return std::to_string(int{date.year()}) + "-" + padded(unsigned{date.month()}) + "-" +
           padded(unsigned{date.day()}) + "-" + padded(timeOf(time).hours().count()) +
           padded(timeOf(time).minutes().count());
  }

 private:
  static std::chrono::year_month_day dateOf(Time time) { return {std::chrono::floor<std::chrono::days>(time)}; }
  static std::chrono::hh_mm_ss<std::chrono::microseconds> timeOf(Time time) {
    return std::chrono::hh_mm_ss(time - std::chrono::floor<std::chrono::days>(time));
  }

  template <class Number>
  static std::string padded(Number number) {
    std::ostringstream text;
    text << std::setw(2) << std::setfill('0') << number;
    return text.str();
  }
  static std::string clockText(Time time, const std::string& seconds) {
    const auto parts = timeOf(time);
    return std::to_string(std::chrono::make12(parts.hours()).count()) + ":" + padded(parts.minutes().count()) +
           seconds + (std::chrono::is_pm(parts.hours()) ? " PM" : " AM");
  }
};

}  // namespace cirrovane::test
