#include "platform/linux/host/ICUTimeText.h"

#include <chrono>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace cirrovane {
namespace {

/// How long a time zone is believed: whoever travels sees the new zone's times soon, and a long list of times does not
/// ask for the zone of each.
constexpr std::chrono::seconds kZoneLifetime{5};

/// The first of the variables that the user has set, in the order in which the system heeds them.
std::string userLocale() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    if (const char* value = std::getenv(variable); value != nullptr && *value != '\0') {
      return value;
    }
  }
  return "C";
}

icu::Locale localeOf(const std::string& identifier) {
  const std::string name = identifier.empty() ? userLocale() : identifier;
  const std::string_view language = std::string_view(name).substr(0, name.find('.'));
  return language == "C" || language == "POSIX" ? icu::Locale("en", "US", "POSIX")
                                                : icu::Locale::createCanonical(name.c_str());
}

std::unique_ptr<icu::TimeZone> zoneOf(const std::string& identifier) {
  return std::unique_ptr<icu::TimeZone>(identifier.empty()
                                            ? icu::TimeZone::detectHostTimeZone()
                                            : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(identifier)));
}

std::unique_ptr<icu::DateFormat> formatOfPattern(const icu::UnicodeString& pattern, const icu::Locale& locale) {
  UErrorCode error = U_ZERO_ERROR;
  std::unique_ptr<icu::DateFormat> format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, error);
  if (U_FAILURE(error) != 0) {
    format.reset();
  }
  return format;
}

/// The language's own arrangement of the fields that the skeleton names.
std::unique_ptr<icu::DateFormat> formatOfSkeleton(const char* skeleton, const icu::Locale& locale) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(locale, error));
  if (U_FAILURE(error) != 0) {
    return nullptr;
  }
  const icu::UnicodeString pattern = generator->getBestPattern(skeleton, error);
  if (U_FAILURE(error) != 0) {
    return nullptr;
  }
  return formatOfPattern(pattern, locale);
}

/// Empty where the machine lacks the language's data.
std::string textOf(const std::unique_ptr<icu::DateFormat>& format, Time time) {
  std::string text;
  if (format) {
    const std::chrono::duration<double, std::milli> sinceEpoch = time.time_since_epoch();
    icu::UnicodeString wide;
    format->format(sinceEpoch.count(), wide).toUTF8String(text);
  }
  return text;
}

}  // namespace

struct ICUTimeText::Formats {
  explicit Formats(const std::string& locale, const std::string& zone) : Formats(localeOf(locale)) { setZone(zone); }

  void setZone(const std::string& identifier) {
    const std::unique_ptr<icu::TimeZone> zone = zoneOf(identifier);
    for (const auto* format : {&shortTime, &timeOfDay, &dayAndTime, &fileNameStamp}) {
      if (*format && zone) {
        (*format)->setTimeZone(*zone);
      }
    }
    zoneIsFrom = std::chrono::steady_clock::now();
  }

  std::unique_ptr<icu::DateFormat> shortTime;
  std::unique_ptr<icu::DateFormat> timeOfDay;
  std::unique_ptr<icu::DateFormat> dayAndTime;
  std::unique_ptr<icu::DateFormat> fileNameStamp;
  std::chrono::steady_clock::time_point zoneIsFrom;

 private:
  explicit Formats(const icu::Locale& locale)
      : shortTime(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale)),
        timeOfDay(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, locale)),
        dayAndTime(formatOfSkeleton("MMMdjmm", locale)),
        fileNameStamp(formatOfPattern("yyyy-MM-dd-HHmm", locale)) {}
};

ICUTimeText::ICUTimeText(std::string locale, std::string timeZone)
    : locale_(std::move(locale)), timeZone_(std::move(timeZone)) {}

ICUTimeText::~ICUTimeText() = default;

const ICUTimeText::Formats& ICUTimeText::formats() const {
  if (!formats_) {
    formats_ = std::make_unique<Formats>(locale_, timeZone_);
  } else if (std::chrono::steady_clock::now() - formats_->zoneIsFrom > kZoneLifetime) {
    formats_->setZone(timeZone_);
  }
  return *formats_;
}

std::string ICUTimeText::shortTime(Time time) const {
  return textOf(formats().shortTime, time);
}

std::string ICUTimeText::timeOfDay(Time time) const {
  return textOf(formats().timeOfDay, time);
}

std::string ICUTimeText::dayAndTime(Time time) const {
  return textOf(formats().dayAndTime, time);
}

std::string ICUTimeText::fileNameStamp(Time time) const {
  return textOf(formats().fileNameStamp, time);
}

}  // namespace cirrovane
