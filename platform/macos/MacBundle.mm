#include "platform/macos/MacBundle.h"

#include "platform/macos/FoundationText.h"

#import <Foundation/Foundation.h>

namespace cirrovane {

std::string MacBundle::location() const {
  @autoreleasepool {
    NSBundle* bundle = NSBundle.mainBundle;
    NSString* path = bundle.bundleURL.path;
    // A bare executable's "bundle" is the folder that it lies in.
    NSString* location = [path hasSuffix:@".app"] ? path : bundle.executablePath;
    return location != nil ? bytesOf(location) : std::string();
  }
}

std::optional<std::string> MacBundle::infoText(std::string_view key) const {
  @autoreleasepool {
    NSString* name = textOf(key);
    id value = name != nil ? [NSBundle.mainBundle objectForInfoDictionaryKey:name] : nil;
    return [value isKindOfClass:[NSString class]] ? std::optional(bytesOf(static_cast<NSString*>(value)))
                                                  : std::nullopt;
  }
}

}  // namespace cirrovane
