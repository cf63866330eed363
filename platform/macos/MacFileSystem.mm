#include "platform/macos/MacFileSystem.h"

#include "base/Path.h"
#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/MacWalk.h"

#import <Foundation/Foundation.h>
#include <cstdint>
#include <memory>
#include <thread>
#include <unistd.h>

namespace cirrovane {
namespace {

std::optional<std::int64_t> integer(NSDictionary<NSURLResourceKey, id>* values, NSURLResourceKey key) {
  id value = values[key];
  return [value isKindOfClass:[NSNumber class]]
             ? std::optional<std::int64_t>(static_cast<NSNumber*>(value).longLongValue)
             : std::nullopt;
}

}  // namespace

bool MacFileSystem::exists(const std::string& path) const {
  const NoMaterialization guard(materialization_);
  // Where it may not be looked at, it is not vouched for.
  return guard.isInForce() && isAddressable(path) && access(path.c_str(), F_OK) == 0;
}

std::unique_ptr<FolderWalk> MacFileSystem::enumerate(const WalkRequest& request) const {
  return startMacWalk(request, systemWalkCalls(), materialization_,
                      macWalkThreadCount(std::thread::hardware_concurrency()));
}

std::unique_ptr<ItemBatch> MacFileSystem::readItems(const std::string& folder,
                                                    const std::vector<std::string>& names) const {
  return readMacItems(folder, names, systemWalkCalls(), materialization_);
}

VolumeCapacities MacFileSystem::volumeCapacities(const std::string& folder) const {
  const NoMaterialization guard(materialization_);
  if (!guard.isInForce()) {
    return {};
  }
  @autoreleasepool {
    NSURL* url = fileURLOf(folder, /*isFolder=*/true);
    NSArray<NSURLResourceKey>* keys =
        @[ NSURLVolumeAvailableCapacityForImportantUsageKey, NSURLVolumeTotalCapacityKey ];
    NSDictionary<NSURLResourceKey, id>* values = [url resourceValuesForKeys:keys error:nil];
    if (values == nil) {
      return {};
    }
    return {integer(values, NSURLVolumeAvailableCapacityForImportantUsageKey),
            integer(values, NSURLVolumeTotalCapacityKey)};
  }
}

std::string MacFileSystem::homeDirectory() const {
  @autoreleasepool {
    return bytesOf(NSHomeDirectory());
  }
}

std::optional<std::string> MacFileSystem::applicationSupportDirectory() const {
  @autoreleasepool {
    NSURL* url = [NSFileManager.defaultManager URLsForDirectory:NSApplicationSupportDirectory
                                                      inDomains:NSUserDomainMask]
                     .firstObject;
    return url != nil ? std::optional(pathOf(url)) : std::nullopt;
  }
}

}  // namespace cirrovane
