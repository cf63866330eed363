#include "platform/macos/MacAmountText.h"

#include "platform/macos/FoundationText.h"

#import <Foundation/Foundation.h>
#include <algorithm>

namespace cirrovane {
namespace {

/// The formatter answers nothing for a time that is longer than a calendar can count.
constexpr double kLongest = 1e10;

}  // namespace

std::string MacAmountText::byteCount(std::int64_t bytes) const {
  @autoreleasepool {
    // Made anew each time, since one keeps to the locale of the moment when it was made, and few are asked for.
    NSByteCountFormatter* formatter = [[NSByteCountFormatter alloc] init];
    formatter.allowedUnits = NSByteCountFormatterUseMB | NSByteCountFormatterUseGB;
    formatter.countStyle = NSByteCountFormatterCountStyleFile;
    return bytesOf([formatter stringFromByteCount:bytes]);
  }
}

std::string MacAmountText::duration(double seconds) const {
  @autoreleasepool {
    NSDateComponentsFormatter* formatter = [[NSDateComponentsFormatter alloc] init];
    formatter.allowedUnits = NSCalendarUnitDay | NSCalendarUnitHour | NSCalendarUnitMinute;
    formatter.maximumUnitCount = 2;
    formatter.unitsStyle = NSDateComponentsFormatterUnitsStyleAbbreviated;
    // Written so that what is no number counts as nothing, at which the formatter would throw.
    const double told = seconds > 0 ? std::min(seconds, kLongest) : 0;
    NSString* text = [formatter stringFromTimeInterval:told];
    return text == nil ? "0m" : bytesOf(text);
  }
}

}  // namespace cirrovane
