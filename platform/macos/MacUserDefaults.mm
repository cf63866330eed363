#include "platform/macos/MacUserDefaults.h"

#include "platform/macos/FoundationText.h"

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

namespace cirrovane {
namespace {

/// Foundation has one class for numbers and truth values; only its foundation tells them apart.
bool isTruthValue(id object) {
  return CFGetTypeID((__bridge CFTypeRef)object) == CFBooleanGetTypeID();
}

std::optional<Failure> store(std::string_view key, id value) {
  NSString* name = textOf(key);
  if (name == nil || value == nil) {
    return Failure{"The setting could not be stored: it is no text."};
  }
  [NSUserDefaults.standardUserDefaults setObject:value forKey:name];
  return std::nullopt;
}

}  // namespace

std::optional<DefaultsValue> MacUserDefaults::value(std::string_view key) const {
  @autoreleasepool {
    NSString* name = textOf(key);
    id object = name != nil ? [NSUserDefaults.standardUserDefaults objectForKey:name] : nil;
    if (object == nil) {
      return std::nullopt;
    }
    if (isTruthValue(object)) {
      return DefaultsValue(static_cast<bool>([static_cast<NSNumber*>(object) boolValue]));
    }
    if ([object isKindOfClass:[NSNumber class]]) {
      return DefaultsValue([static_cast<NSNumber*>(object) doubleValue]);
    }
    if ([object isKindOfClass:[NSString class]]) {
      return DefaultsValue(bytesOf(static_cast<NSString*>(object)));
    }
    return DefaultsValue(OtherDefaultsValue());
  }
}

std::optional<Failure> MacUserDefaults::set(std::string_view key, bool value) {
  @autoreleasepool {
    return store(key, value ? @YES : @NO);
  }
}

std::optional<Failure> MacUserDefaults::set(std::string_view key, const std::string& value) {
  @autoreleasepool {
    return store(key, textOf(value));
  }
}

}  // namespace cirrovane
