#include "platform/macos/MacSystemInformation.h"

#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/FrameworkNumbers.h"
#include "platform/macos/plain/Owned.h"
#include "platform/macos/plain/PowerDescription.h"
#include "platform/posix/HostCondition.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <IOKit/ps/IOPSKeys.h>
#import <IOKit/ps/IOPowerSources.h>
#import <dispatch/dispatch.h>

namespace cirrovane {
namespace {

using OwnedBlob = Owned<CFTypeRef, CFRelease>;
using OwnedArray = Owned<CFArrayRef, CFRelease>;

NSString* frameworkKey(PowerKey key) {
  switch (key) {
    case PowerKey::currentCapacity:
      return @kIOPSCurrentCapacityKey;
    case PowerKey::maximumCapacity:
      return @kIOPSMaxCapacityKey;
    case PowerKey::isCharging:
      return @kIOPSIsChargingKey;
    case PowerKey::state:
      return @kIOPSPowerSourceStateKey;
  }
}

class IOKitPowerDescription final : public PowerDescription {
 public:
  explicit IOKitPowerDescription(NSDictionary<NSString*, id>* values) : values_(values) {}

  std::optional<double> number(PowerKey key) const override {
    NSNumber* found = numberOf(key);
    return found != nil ? std::optional<double>(found.doubleValue) : std::nullopt;
  }

  std::optional<bool> boolean(PowerKey key) const override {
    NSNumber* found = numberOf(key);
    return found != nil ? std::optional<bool>(found.boolValue) : std::nullopt;
  }

  std::optional<std::string> text(PowerKey key) const override {
    id found = values_[frameworkKey(key)];
    return [found isKindOfClass:[NSString class]] ? std::optional(bytesOf(static_cast<NSString*>(found)))
                                                  : std::nullopt;
  }

 private:
  NSNumber* numberOf(PowerKey key) const {
    id found = values_[frameworkKey(key)];
    return [found isKindOfClass:[NSNumber class]] ? static_cast<NSNumber*>(found) : nil;
  }

  NSDictionary<NSString*, id>* values_;
};

}  // namespace

bool MacSystemInformation::hasUbiquityIdentityToken() const {
  @autoreleasepool {
    return NSFileManager.defaultManager.ubiquityIdentityToken != nil;
  }
}

bool MacSystemInformation::isApplicationRunning(std::string_view bundleIdentifier) const {
  @autoreleasepool {
    NSString* identifier = textOf(bundleIdentifier);
    if (identifier == nil) {
      return false;
    }
    __block bool isRunning = false;
    const dispatch_block_t ask = ^{
      isRunning = [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier].count > 0;
    };
    if (NSThread.isMainThread) {
      ask();
    } else {
      dispatch_sync(dispatch_get_main_queue(), ask);
    }
    return isRunning;
  }
}

std::optional<ThermalState> MacSystemInformation::thermalState() const {
  static_assert(NSProcessInfoThermalStateNominal == 0 && NSProcessInfoThermalStateFair == 1 &&
                NSProcessInfoThermalStateSerious == 2 && NSProcessInfoThermalStateCritical == 3);
  @autoreleasepool {
    return thermalStateOf(NSProcessInfo.processInfo.thermalState);
  }
}

bool MacSystemInformation::isLowPowerModeEnabled() const {
  @autoreleasepool {
    return NSProcessInfo.processInfo.lowPowerModeEnabled;
  }
}

double MacSystemInformation::systemUptime() const {
  @autoreleasepool {
    return NSProcessInfo.processInfo.systemUptime;
  }
}

std::uint64_t MacSystemInformation::physicalMemory() const {
  @autoreleasepool {
    return NSProcessInfo.processInfo.physicalMemory;
  }
}

std::optional<std::string> MacSystemInformation::environmentVariable(const std::string& name) const {
  return hostEnvironmentVariable(name);
}

std::optional<LoadAverages> MacSystemInformation::loadAverages() const {
  return hostLoadAverages();
}

std::vector<PowerSource> MacSystemInformation::powerSources() const {
  std::vector<PowerSource> sources;
  @autoreleasepool {
    const OwnedBlob blob(IOPSCopyPowerSourcesInfo());
    if (!blob) {
      return sources;
    }
    const OwnedArray list(IOPSCopyPowerSourcesList(blob.get()));
    if (!list) {
      return sources;
    }
    for (CFIndex index = 0; index < CFArrayGetCount(list.get()); ++index) {
      // Not owned: it lives as long as the blob.
      const CFDictionaryRef description =
          IOPSGetPowerSourceDescription(blob.get(), CFArrayGetValueAtIndex(list.get(), index));
      if (description != nullptr) {
        sources.push_back(powerSourceOf(IOKitPowerDescription((__bridge NSDictionary<NSString*, id>*)description)));
      }
    }
  }
  return sources;
}

}  // namespace cirrovane
