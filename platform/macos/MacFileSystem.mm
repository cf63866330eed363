#include "platform/macos/MacFileSystem.h"

#include "base/Path.h"
#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/CollectedBatch.h"
#include "platform/macos/plain/FolderAlias.h"
#include "platform/macos/plain/ListingError.h"
#include "platform/macos/plain/RefusedWalk.h"
#include "platform/macos/plain/ResourceDictionary.h"
#include "platform/macos/plain/RootProbe.h"

#import <Foundation/Foundation.h>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>
#include <utility>

namespace cirrovane {
namespace {

/// Items between two looks at what Foundation left to be freed.
constexpr std::size_t kBatchSize = 512;

NSURLResourceKey foundationKey(ResourceKey key) {
  switch (key) {
    case ResourceKey::isDirectory:
      return NSURLIsDirectoryKey;
    case ResourceKey::isRegularFile:
      return NSURLIsRegularFileKey;
    case ResourceKey::isPackage:
      return NSURLIsPackageKey;
    case ResourceKey::isUbiquitousItem:
      return NSURLIsUbiquitousItemKey;
    case ResourceKey::contentModificationDate:
      return NSURLContentModificationDateKey;
    case ResourceKey::ubiquitousItemIsUploaded:
      return NSURLUbiquitousItemIsUploadedKey;
    case ResourceKey::ubiquitousItemIsUploading:
      return NSURLUbiquitousItemIsUploadingKey;
    case ResourceKey::ubiquitousItemDownloadingStatus:
      return NSURLUbiquitousItemDownloadingStatusKey;
    case ResourceKey::ubiquitousItemHasUnresolvedConflicts:
      return NSURLUbiquitousItemHasUnresolvedConflictsKey;
    case ResourceKey::ubiquitousItemUploadingError:
      return NSURLUbiquitousItemUploadingErrorKey;
    case ResourceKey::ubiquitousItemDownloadingError:
      return NSURLUbiquitousItemDownloadingErrorKey;
  }
}

NSArray<NSURLResourceKey>* foundationKeys() {
  NSMutableArray<NSURLResourceKey>* keys = [NSMutableArray array];
  for (const ResourceKey key : kResourceKeys) {
    [keys addObject:foundationKey(key)];
  }
  return keys;
}

/// The object if it is of the class, else nil.
template <class Object>
Object* checked(id object, Class expected) {
  return [object isKindOfClass:expected] ? static_cast<Object*>(object) : nil;
}

/// The texts of the downloading status, made once for a walk.
struct StatusTexts {
  std::string current = bytesOf(NSURLUbiquitousItemDownloadingStatusCurrent);
  std::string downloaded = bytesOf(NSURLUbiquitousItemDownloadingStatusDownloaded);
  std::string notDownloaded = bytesOf(NSURLUbiquitousItemDownloadingStatusNotDownloaded);
};

class FoundationResources final : public ResourceDictionary {
 public:
  FoundationResources(NSDictionary<NSURLResourceKey, id>* values, const StatusTexts& statusTexts)
      : values_(values), statusTexts_(statusTexts) {}

  std::optional<bool> boolean(ResourceKey key) const override {
    NSNumber* number = checked<NSNumber>(values_[foundationKey(key)], [NSNumber class]);
    return number != nil ? std::optional<bool>(number.boolValue) : std::nullopt;
  }

  std::optional<double> secondsSince1970(ResourceKey key) const override {
    NSDate* date = checked<NSDate>(values_[foundationKey(key)], [NSDate class]);
    return date != nil ? std::optional<double>(date.timeIntervalSince1970) : std::nullopt;
  }

  std::optional<DownloadingStatus> downloadingStatus() const override {
    NSString* status = checked<NSString>(values_[NSURLUbiquitousItemDownloadingStatusKey], [NSString class]);
    if (status == nil) {
      return std::nullopt;
    }
    return downloadingStatusOf(bytesOf(status),
                               {statusTexts_.current, statusTexts_.downloaded, statusTexts_.notDownloaded});
  }

  std::optional<std::string> errorText(ResourceKey key) const override {
    NSError* error = checked<NSError>(values_[foundationKey(key)], [NSError class]);
    return error != nil ? std::optional(bytesOf(error.localizedDescription)) : std::nullopt;
  }

 private:
  NSDictionary<NSURLResourceKey, id>* values_;
  const StatusTexts& statusTexts_;
};

/// The path without any link in it; the path itself where that cannot be found out.
std::string withoutLinks(const std::string& path) {
  char* found = realpath(path.c_str(), nullptr);
  std::string real = found != nullptr ? found : path;
  std::free(found);
  return real;
}

/// What becomes known of a walk while it goes on.
struct WalkFindings {
  /// The folder that the walk began at may hold more than the walk told.
  bool isCutShort = false;
};

std::optional<std::string> pathOf(NSURL* _Nullable url) {
  NSString* path = url.path;
  return path != nil ? std::optional(bytesOf(path)) : std::nullopt;
}

ListingError listingErrorOf(NSURL* _Nullable given, NSError* error) {
  NSDictionary<NSErrorUserInfoKey, id>* told = error.userInfo;
  NSString* plainPath = checked<NSString>(told[NSFilePathErrorKey], [NSString class]);
  return {pathOf(given), pathOf(checked<NSURL>(told[NSURLErrorKey], [NSURL class])),
          plainPath != nil ? std::optional(bytesOf(plainPath)) : std::nullopt};
}

/// What cannot be listed is passed over; but of the folder itself it is noted that its items were kept from us.
NSDirectoryEnumerator<NSURL*>* enumeratorOf(const FolderAlias& folder, NSArray<NSURLResourceKey>* keys,
                                            const std::shared_ptr<WalkFindings>& findings, bool isDeep) {
  NSURL* root = fileURLOf(folder.real, /*isFolder=*/true);
  if (root == nil) {
    return nil;
  }
  NSDirectoryEnumerationOptions options =
      NSDirectoryEnumerationSkipsHiddenFiles | NSDirectoryEnumerationSkipsPackageDescendants;
  if (!isDeep) {
    options |= NSDirectoryEnumerationSkipsSubdirectoryDescendants;
  }
  // Copies, since the block would keep no more of a reference than the reference.
  const std::shared_ptr<WalkFindings> noted = findings;
  const FolderAlias walked = folder;
  return [NSFileManager.defaultManager enumeratorAtURL:root
                            includingPropertiesForKeys:keys
                                               options:options
                                          errorHandler:^BOOL(NSURL* _Nullable url, NSError* error) {
                                            if (endsListing(listingErrorOf(url, error), walked)) {
                                              noted->isCutShort = true;
                                            }
                                            return YES;
                                          }];
}

/// Reads the item's values into the batch; false for an item of another folder than the batch's.
bool addItem(CollectedBatch& batch, NSURL* url, const FolderAlias& folder, NSArray<NSURLResourceKey>* keys,
             const StatusTexts& statusTexts) {
  NSString* path = url.path;
  std::string asked = path != nil ? folder.asAsked(bytesOf(path)) : std::string();
  if (batch.size() > 0 && parentPath(asked) != batch.folderPath()) {
    return false;
  }
  NSDictionary<NSURLResourceKey, id>* values = [url resourceValuesForKeys:keys error:nil];
  if (values == nil) {
    batch.add(std::move(asked), nullptr);
  } else {
    const FoundationResources dictionary(values, statusTexts);
    batch.add(std::move(asked), &dictionary);
  }
  return true;
}

class MacFolderWalk final : public FolderWalk {
 public:
  MacFolderWalk(FolderAlias folder, NSDirectoryEnumerator<NSURL*>* enumerator, NSArray<NSURLResourceKey>* keys,
                std::shared_ptr<WalkFindings> findings, const MaterializationCalls& materialization)
      : folder_(std::move(folder)),
        enumerator_(enumerator),
        keys_(keys),
        findings_(std::move(findings)),
        materialization_(materialization) {}

  const ItemBatch* next() override {
    // At each call, because the caller may come on another thread.
    const NoMaterialization guard(materialization_);
    batch_.clear();
    if (!guard.isInForce() && enumerator_ != nil) {
      // What is left cannot be looked at.
      enumerator_ = nil;
      findings_->isCutShort = true;
    }
    @autoreleasepool {
      while (batch_.size() < kBatchSize && enumerator_ != nil) {
        NSURL* url = waiting_ != nil ? waiting_ : [enumerator_ nextObject];
        waiting_ = nil;
        if (url == nil) {
          enumerator_ = nil;
        } else if (!addItem(batch_, url, folder_, keys_, statusTexts_)) {
          // The first of another folder, which begins a batch of its own.
          waiting_ = url;
          break;
        }
      }
    }
    return batch_.size() > 0 ? &batch_ : nullptr;
  }

  bool isComplete() const override { return !findings_->isCutShort; }

 private:
  FolderAlias folder_;
  NSDirectoryEnumerator<NSURL*>* enumerator_;
  NSURL* _Nullable waiting_ = nil;
  NSArray<NSURLResourceKey>* keys_;
  std::shared_ptr<WalkFindings> findings_;
  const MaterializationCalls& materialization_;
  StatusTexts statusTexts_;
  CollectedBatch batch_;
};

std::optional<std::int64_t> integer(NSDictionary<NSURLResourceKey, id>* values, NSURLResourceKey key) {
  NSNumber* number = checked<NSNumber>(values[key], [NSNumber class]);
  return number != nil ? std::optional<std::int64_t>(number.longLongValue) : std::nullopt;
}

}  // namespace

bool MacFileSystem::exists(const std::string& path) const {
  const NoMaterialization guard(materialization_);
  if (!guard.isInForce()) {
    // Not looked at, and so not vouched for.
    return false;
  }
  @autoreleasepool {
    NSURL* url = fileURLOf(path, /*isFolder=*/false);
    NSString* text = url != nil ? textOf(path) : nil;
    return text != nil && [NSFileManager.defaultManager fileExistsAtPath:text];
  }
}

std::unique_ptr<FolderWalk> MacFileSystem::enumerate(const WalkRequest& request) const {
  const NoMaterialization guard(materialization_);
  if (!guard.isInForce()) {
    return std::make_unique<RefusedWalk>();
  }
  @autoreleasepool {
    // The enumerator takes a link for an item, and a folder reached by a link for an empty one.
    FolderAlias alias{request.folder, withoutLinks(request.folder)};
    // Before the enumerator, whose errors do not tell a folder that is only in the cloud from one that is kept from us.
    if (std::unique_ptr<FolderWalk> walk = walkWithoutItems(probeRoot(alias.real))) {
      return walk;
    }
    NSArray<NSURLResourceKey>* keys = foundationKeys();
    const auto findings = std::make_shared<WalkFindings>();
    NSDirectoryEnumerator<NSURL*>* enumerator = enumeratorOf(alias, keys, findings, request.isDeep);
    if (enumerator == nil) {
      return nullptr;
    }
    if (request.observer != nullptr) {
      request.observer->beforeListing(request.folder, -1);
    }
    return std::make_unique<MacFolderWalk>(std::move(alias), enumerator, keys, findings, materialization_);
  }
}

std::unique_ptr<ItemBatch> MacFileSystem::readItems(const std::string& folder,
                                                    const std::vector<std::string>& names) const {
  const NoMaterialization guard(materialization_);
  auto batch = std::make_unique<CollectedBatch>();
  @autoreleasepool {
    const FolderAlias alias{folder, folder};
    const StatusTexts statusTexts;
    for (const std::string& name : names) {
      std::string path = folder;
      path.append("/").append(name);
      struct stat status {};
      if (name.starts_with('.') || lstat(path.c_str(), &status) != 0) {
        continue;
      }
      NSURL* url = guard.isInForce() ? fileURLOf(path, /*isFolder=*/false) : nil;
      if (url == nil) {
        batch->add(std::move(path), nullptr);
      } else {
        addItem(*batch, url, alias, foundationKeys(), statusTexts);
      }
    }
  }
  return batch->size() > 0 ? std::move(batch) : nullptr;
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
    NSString* path = url.path;
    return path != nil ? std::optional(bytesOf(path)) : std::nullopt;
  }
}

}  // namespace cirrovane
