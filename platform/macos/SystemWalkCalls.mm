#include "platform/macos/SystemWalkCalls.h"

#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/PackedEntry.h"
#include "platform/posix/walk/WalkedFolder.h"

#import <Foundation/Foundation.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/attr.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vnode.h>
#include <unistd.h>

namespace cirrovane {
namespace {

static_assert(kReturnedAttributes == ATTR_CMN_RETURNED_ATTRS && kErrorAttribute == ATTR_CMN_ERROR &&
              kNameAttribute == ATTR_CMN_NAME && kTypeAttribute == ATTR_CMN_OBJTYPE &&
              kModifiedAttribute == ATTR_CMN_MODTIME && kFlagsAttribute == ATTR_CMN_FLAGS &&
              kSizeAttribute == ATTR_FILE_DATALENGTH);
static_assert(kRegularFileType == VREG && kFolderType == VDIR && kHiddenFlag == UF_HIDDEN);
static_assert(kMaterializationOff == IOPOL_MATERIALIZE_DATALESS_FILES_OFF);

/// What the kernel is asked of a folder's entries: name, kind, date and flags of each.
attrlist askingFor(attrgroup_t more) {
  attrlist asked{};
  asked.bitmapcount = ATTR_BIT_MAP_COUNT;
  asked.commonattr =
      kReturnedAttributes | kNameAttribute | kTypeAttribute | kModifiedAttribute | kFlagsAttribute | more;
  asked.fileattr = kSizeAttribute;
  return asked;
}

int scopeNumber(PolicyScope scope) {
  return scope == PolicyScope::thread ? IOPOL_SCOPE_THREAD : IOPOL_SCOPE_PROCESS;
}

/// The key that only newer systems than the one that this is built for have. By a name that the running one does not
/// know, it says nothing.
NSURLResourceKey syncPausedKey() {
  const auto* key = static_cast<NSURLResourceKey const __unsafe_unretained*>(
      dlsym(RTLD_DEFAULT, "NSURLUbiquitousItemIsSyncPausedKey"));
  return key != nullptr ? *key : @"NSURLUbiquitousItemIsSyncPausedKey";
}

NSURLResourceKey foundationKey(ResourceKey key) {
  switch (key) {
    case ResourceKey::isUbiquitousItem:
      return NSURLIsUbiquitousItemKey;
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
    case ResourceKey::ubiquitousItemIsExcludedFromSync:
      return NSURLUbiquitousItemIsExcludedFromSyncKey;
    case ResourceKey::ubiquitousItemIsSyncPaused:
      return syncPausedKey();
    case ResourceKey::isPackage:
      return NSURLIsPackageKey;
  }
}

NSArray<NSURLResourceKey>* foundationKeys(WalkScope scope) {
  NSMutableArray<NSURLResourceKey>* keys = [NSMutableArray array];
  for (const ResourceKey key : resourceKeysFor(scope)) {
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
  FoundationResources(NSDictionary<NSURLResourceKey, id>* _Nonnull values, const StatusTexts& statusTexts)
      : values_(values), statusTexts_(statusTexts) {}

  std::optional<bool> boolean(ResourceKey key) const override {
    NSNumber* number = checked<NSNumber>(values_[foundationKey(key)], [NSNumber class]);
    return number != nil ? std::optional<bool>(number.boolValue) : std::nullopt;
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

/// What the cloud says of the item. The URL is a new one for each question, because one keeps what it once answered.
NSDictionary<NSURLResourceKey, id>* _Nullable cloudValuesOf(NSURL* _Nonnull item, NSArray<NSURLResourceKey>* keys) {
  return [item resourceValuesForKeys:keys error:nil];
}

class SystemWalkCalls final : public MacWalkCalls {
 public:
  int openFolder(int directory, const char* name, int flags) const override {
    return cirrovane::openFolder(directory, name, flags);
  }
  int listEntries(int descriptor, std::span<char> target) const override {
    attrlist asked = askingFor(kErrorAttribute);
    return getattrlistbulk(descriptor, &asked, target.data(), target.size(), 0);
  }
  int readEntry(int descriptor, const char* name, std::span<char> target) const override {
    attrlist asked = askingFor(0);
    return getattrlistat(descriptor, name, &asked, target.data(), target.size(), FSOPT_NOFOLLOW);
  }

  std::string withoutLinks(const std::string& path) const override { return pathWithoutLinks(path); }

  bool isPackageExtension(std::string_view extension) const override { return isSystemPackageExtension(extension); }

  bool readCloudState(const std::string& path, bool isFolder, WalkScope scope,
                      const ResourceTaker& take) const override {
    @autoreleasepool {
      NSURL* url = fileURLOf(path, isFolder);
      if (url == nil) {
        return false;
      }
      NSDictionary<NSURLResourceKey, id>* values =
          cloudValuesOf(url, scope == WalkScope::everything ? allKeys_ : keys_);
      if (values == nil) {
        return false;
      }
      take(FoundationResources(values, statusTexts_));
      return true;
    }
  }

 private:
  NSArray<NSURLResourceKey>* keys_ = foundationKeys(WalkScope::shown);
  NSArray<NSURLResourceKey>* allKeys_ = foundationKeys(WalkScope::everything);
  StatusTexts statusTexts_;
};

}  // namespace

std::string pathWithoutLinks(const std::string& path) {
  char* found = realpath(path.c_str(), nullptr);
  std::string real = found != nullptr ? found : path;
  std::free(found);
  return real;
}

bool isSystemPackageExtension(std::string_view extension) {
  @autoreleasepool {
    NSString* text = textOf(extension);
    UTType* type = text != nil ? [UTType typeWithFilenameExtension:text conformingToType:UTTypeDirectory] : nil;
    return [type conformsToType:UTTypePackage];
  }
}

std::optional<int> SystemMaterialization::policy(PolicyScope scope) const {
  const int policy = getiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, scopeNumber(scope));
  return policy >= 0 ? std::optional(policy) : std::nullopt;
}

bool SystemMaterialization::setPolicy(PolicyScope scope, int policy) const {
  return setiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, scopeNumber(scope), policy) == 0;
}

std::shared_ptr<const MacWalkCalls> systemWalkCalls() {
  @autoreleasepool {
    return std::make_shared<const SystemWalkCalls>();
  }
}

}  // namespace cirrovane
