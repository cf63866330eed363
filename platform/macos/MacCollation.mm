#include "platform/macos/MacCollation.h"

#include "platform/macos/FoundationText.h"

#import <Foundation/Foundation.h>

namespace cirrovane {

std::weak_ordering MacCollation::compare(std::string_view lhs, std::string_view rhs) const {
  @autoreleasepool {
    NSString* left = textOf(lhs);
    NSString* right = textOf(rhs);
    if (left == nil || right == nil) {
      return lhs <=> rhs;
    }
    return [left localizedCaseInsensitiveCompare:right] <=> NSOrderedSame;
  }
}

}  // namespace cirrovane
