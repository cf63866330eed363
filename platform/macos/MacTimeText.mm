#include "platform/macos/MacTimeText.h"

#include "platform/macos/FoundationText.h"

#import <Foundation/Foundation.h>
#include <chrono>

namespace cirrovane {
namespace {

NSDateFormatter* timeFormatter(NSDateFormatterStyle style) {
  NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
  formatter.dateStyle = NSDateFormatterNoStyle;
  formatter.timeStyle = style;
  return formatter;
}

/// The locale's own arrangement of the fields that the template names.
NSDateFormatter* templateFormatter(NSString* parts) {
  NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
  [formatter setLocalizedDateFormatFromTemplate:parts];
  return formatter;
}

NSDateFormatter* patternFormatter(NSString* pattern) {
  NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
  formatter.dateFormat = pattern;
  return formatter;
}

std::string text(NSDateFormatter* formatter, Time time) {
  @autoreleasepool {
    const std::chrono::duration<double> seconds = time.time_since_epoch();
    return bytesOf([formatter stringFromDate:[NSDate dateWithTimeIntervalSince1970:seconds.count()]]);
  }
}

}  // namespace

struct MacTimeText::Formats {
  NSLocale* locale = NSLocale.currentLocale;
  NSTimeZone* timeZone = NSTimeZone.systemTimeZone;
  NSDateFormatter* shortTime = timeFormatter(NSDateFormatterShortStyle);
  NSDateFormatter* timeOfDay = timeFormatter(NSDateFormatterMediumStyle);
  NSDateFormatter* dayAndTime = templateFormatter(@"MMMdjmm");
  NSDateFormatter* fileNameStamp = patternFormatter(@"yyyy-MM-dd-HHmm");

  /// A formatter keeps to the locale and the zone of the moment when it was made.
  bool areCurrent() const {
    return [locale isEqual:NSLocale.currentLocale] && [timeZone isEqual:NSTimeZone.systemTimeZone];
  }
};

MacTimeText::MacTimeText() = default;

MacTimeText::~MacTimeText() = default;

const MacTimeText::Formats& MacTimeText::formats() const {
  @autoreleasepool {
    if (!formats_ || !formats_->areCurrent()) {
      formats_ = std::make_unique<Formats>();
    }
  }
  return *formats_;
}

std::string MacTimeText::shortTime(Time time) const {
  return text(formats().shortTime, time);
}

std::string MacTimeText::timeOfDay(Time time) const {
  return text(formats().timeOfDay, time);
}

std::string MacTimeText::dayAndTime(Time time) const {
  return text(formats().dayAndTime, time);
}

std::string MacTimeText::fileNameStamp(Time time) const {
  return text(formats().fileNameStamp, time);
}

}  // namespace cirrovane
