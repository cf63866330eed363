#include "platform/macos/MacBundle.h"

#include "platform/macos/FoundationText.h"

#import <Foundation/Foundation.h>

namespace cirrovane {

std::string MacBundle::location() const {
  @autoreleasepool {
    NSBundle* bundle = NSBundle.mainBundle;
    std::string path = pathOf(bundle.bundleURL);
    if (path.ends_with(".app")) {
      return path;
    }
    // A bare executable's "bundle" is the folder that it lies in.
    NSURL* executable = bundle.executableURL;
    return executable != nil ? pathOf(executable) : std::string();
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
