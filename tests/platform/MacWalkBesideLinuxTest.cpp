// The walk of a Mac beside that of Linux, on the same folders of this machine: what both have to tell is the same.

#include "platform/linux/host/HostDisk.h"
#include "platform/linux/walk/ICloudAttribute.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/linux/walk/Packages.h"
#include "platform/macos/plain/MacWalk.h"
#include "platform/posix/walk/WalkedFolder.h"
#include "tests/macos/EntryPacker.h"
#include "tests/platform/WalkedItems.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr std::uint32_t kNoKnownType = 0;
constexpr std::uint32_t kLink = 5;

class AttributeState final : public ResourceDictionary {
 public:
  explicit AttributeState(const ResourceValues& values) : values_(values) {}

  std::optional<bool> boolean(ResourceKey key) const override {
    switch (key) {
      case ResourceKey::isUbiquitousItem:
        return values_.isUbiquitousItem;
      case ResourceKey::ubiquitousItemIsUploaded:
        return values_.isUploaded;
      case ResourceKey::ubiquitousItemIsUploading:
        return values_.isUploading;
      case ResourceKey::ubiquitousItemHasUnresolvedConflicts:
        return values_.hasUnresolvedConflicts;
      default:
        return std::nullopt;
    }
  }
  std::optional<DownloadingStatus> downloadingStatus() const override { return values_.downloadingStatus; }
  std::optional<std::string> errorText(ResourceKey key) const override {
    const auto& text =
        key == ResourceKey::ubiquitousItemUploadingError ? values_.uploadingError : values_.downloadingError;
    return text ? std::optional(std::string(*text)) : std::nullopt;
  }

 private:
  const ResourceValues& values_;
};

std::uint32_t typeOf(const struct stat& status) {
  if (S_ISREG(status.st_mode)) {
    return kRegularFileType;
  }
  if (S_ISDIR(status.st_mode)) {
    return kFolderType;
  }
  return S_ISLNK(status.st_mode) ? kLink : kNoKnownType;
}

/// A Mac's calls, answered by this machine's files in the order in which their folders list them.
class RealDisk final : public MacWalkCalls {
 public:
  int openFolder(int directory, const char* name, int flags) const override {
    const int descriptor = cirrovane::openFolder(directory, name, flags);
    if (descriptor >= 0) {
      const std::lock_guard lock(mutex_);
      positions_.erase(descriptor);
    }
    return descriptor;
  }

  int listEntries(int descriptor, std::span<char> target) const override {
    const std::lock_guard lock(mutex_);
    const auto [position, isNew] = positions_.try_emplace(descriptor);
    Listing& listing = position->second;
    if (isNew) {
      listing.names = namesIn(descriptor);
    }
    std::size_t used = 0;
    int count = 0;
    for (; listing.next < listing.names.size(); ++listing.next, ++count) {
      const std::string entry = packedEntry(descriptor, listing.names[listing.next].c_str());
      if (target.size() - used < entry.size()) {
        break;
      }
      std::ranges::copy(entry, target.begin() + static_cast<std::ptrdiff_t>(used));
      used += entry.size();
    }
    return count;
  }

  int readEntry(int descriptor, const char* name, std::span<char> target) const override {
    if (faccessat(descriptor, name, F_OK, AT_SYMLINK_NOFOLLOW) != 0) {
      return -1;
    }
    std::ranges::copy(packedEntry(descriptor, name), target.begin());
    return 0;
  }

  std::string withoutLinks(const std::string& path) const override {
    const std::unique_ptr<char, decltype(&std::free)> found(realpath(path.c_str(), nullptr), &std::free);
    return found ? found.get() : path;
  }

  bool isPackageExtension(std::string_view extension) const override {
    return isPackageName("name." + std::string(extension));
  }

  bool readCloudState(const std::string& path, bool /*isFolder*/, WalkScope scope,
                      const ResourceTaker& take) const override {
    std::array<char, 4096> attribute{};
    const ssize_t length = lgetxattr(path.c_str(), kICloudAttributeName, attribute.data(), attribute.size());
    if (length < 0 && errno != ENODATA) {
      return false;
    }
    const auto values = length < 0 ? ResourceValues()
                                   : parseICloudAttribute({attribute.data(), static_cast<std::size_t>(length)}, scope);
    if (values) {
      take(AttributeState(*values));
    }
    return values.has_value();
  }

 private:
  struct Listing {
    std::vector<std::string> names;
    std::size_t next = 0;
  };

  static std::vector<std::string> namesIn(int descriptor) {
    std::vector<std::string> names;
    DIR* stream = fdopendir(dup(descriptor));
    while (const dirent* entry = readdir(stream)) {
      names.emplace_back(entry->d_name);
    }
    closedir(stream);
    return names;
  }

  static std::string packedEntry(int descriptor, const char* name) {
    struct stat status {};
    const bool isThere = fstatat(descriptor, name, &status, AT_SYMLINK_NOFOLLOW) == 0;
    return packed({.name = name,
                   .type = typeOf(status),
                   .error = isThere ? 0 : ENOENT,
                   .flags = 0,
                   .modifiedSeconds = status.st_mtim.tv_sec,
                   .modifiedNanoseconds = status.st_mtim.tv_nsec});
  }

  mutable std::mutex mutex_;
  mutable std::map<int, Listing> positions_;
};

class GrantedPolicy final : public MaterializationCalls {
 public:
  std::optional<int> policy(PolicyScope /*scope*/) const override { return kMaterializationOff; }
  bool setPolicy(PolicyScope /*scope*/, int /*policy*/) const override { return true; }
};

void expectSame(const std::vector<WalkedItem>& mac, const std::vector<WalkedItem>& ofLinux) {
  ASSERT_EQ(pathsOf(mac), pathsOf(ofLinux));
  for (std::size_t index = 0; index < mac.size(); ++index) {
    SCOPED_TRACE(mac[index].path);
    ASSERT_EQ(mac[index].values.has_value(), ofLinux[index].values.has_value());
    if (!mac[index].values) {
      continue;
    }
    const WalkedValues& here = *mac[index].values;
    const WalkedValues& there = *ofLinux[index].values;
    EXPECT_EQ(here.isDirectory, there.isDirectory);
    if (here.isDirectory) {
      // Of a folder Linux tells what its attribute says; nobody looks at that.
      continue;
    }
    EXPECT_EQ(here.isUbiquitousItem, there.isUbiquitousItem);
    if (!here.isUbiquitousItem) {
      continue;
    }
    EXPECT_EQ(here.isUploaded, there.isUploaded);
    EXPECT_EQ(here.isUploading, there.isUploading);
    EXPECT_EQ(here.hasUnresolvedConflicts, there.hasUnresolvedConflicts);
    EXPECT_EQ(here.downloadingStatus, there.downloadingStatus);
    EXPECT_EQ(here.uploadingError, there.uploadingError);
    EXPECT_EQ(here.downloadingError, there.downloadingError);
    if (there.contentModificationDate) {
      EXPECT_EQ(here.contentModificationDate, there.contentModificationDate);
    }
  }
}

class MacWalkBesideLinux : public testing::Test {
 protected:
  std::vector<WalkedItem> macItems(const std::string& folder, std::size_t threadCount) const {
    const auto walk = startMacWalk({folder}, disk_, policy_, threadCount);
    auto items = restOf(*walk);
    EXPECT_TRUE(walk->isComplete());
    return items;
  }
  std::vector<WalkedItem> linuxItems(const std::string& folder) const {
    return restOf(*LinuxFileSystem(hostFolders(), hostVolume).enumerate(folder));
  }
  void expectSameWalks(const std::string& folder) const {
    const auto ofLinux = linuxItems(folder);
    for (const std::size_t threadCount : {0U, 4U, 8U}) {
      SCOPED_TRACE(threadCount);
      expectSame(macItems(folder, threadCount), ofLinux);
    }
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const std::shared_ptr<RealDisk> disk_ = std::make_shared<RealDisk>();
  GrantedPolicy policy_;
};

TEST_F(MacWalkBesideLinux, treeOfEveryKindOfItem_isTheSameInTheSameOrder) {
  const std::vector<std::string> states = {"",
                                           "isUploaded=false",
                                           "isUploaded=false\nisUploading=true",
                                           "hasUnresolvedConflicts=true",
                                           "downloadingStatus=notDownloaded",
                                           "uploadingError=No room.\ndownloadingError=No network.",
                                           "isUbiquitous=false\nisUploaded=false",
                                           "not a state"};
  for (int number = 0; number < 300; ++number) {
    const std::string name = fmt::format("{}/{}/file {}", number % 7, number % 11, number);
    writeFile(folder_ / name);
    if (number % 3 != 0) {
      setICloudAttribute(folder_ / name, states[static_cast<std::size_t>(number) % states.size()]);
    }
  }
  for (const char* name : {".hidden", "shown/.folder/file", "A.app/Contents/file", "shown/B.photosLibrary/file",
                           "v1.2/file", "cafe\xCC\x81/caf\xC3\xA9", "\xFF\xFE", "line\nbreak/file"}) {
    writeFile(folder_ / name);
  }
  makeFolder(folder_ / "empty");
  ASSERT_EQ(symlink("shown", (folder_ / "link").c_str()), 0);
  ASSERT_EQ(symlink("nowhere", (folder_ / "shown/dangling").c_str()), 0);
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  EXPECT_GT(linuxItems(folder_.path()).size(), 380U);
  expectSameWalks(folder_.path());
}

TEST_F(MacWalkBesideLinux, flatFolderOfManyEntries_isTheSameInTheSameOrder) {
  for (int number = 0; number < 5000; ++number) {
    writeFile(folder_ / fmt::format("{:x<{}}", number, 10 + number % 200));
  }
  EXPECT_EQ(linuxItems(folder_.path()).size(), 5000U);
  expectSameWalks(folder_.path());
}

TEST_F(MacWalkBesideLinux, folderReachedByALink_isTheSameInTheSameOrder) {
  writeFile(folder_ / "real/below/file");
  setICloudAttribute(folder_ / "real/below/file", "isUploaded=false");
  ASSERT_EQ(symlink("real", (folder_ / "link").c_str()), 0);
  EXPECT_EQ(pathsOf(linuxItems(folder_ / "link")).back(), folder_ / "link/below/file");
  expectSameWalks(folder_ / "link");
}

TEST_F(MacWalkBesideLinux, namedItems_areTheSameInTheSameOrder) {
  writeFile(folder_ / "file");
  setICloudAttribute(folder_ / "file", "isUploaded=false\nuploadingError=No room.");
  writeFile(folder_ / "A.app/file");
  makeFolder(folder_ / "folder");
  const std::vector<std::string> names = {"folder", "missing", ".hidden", "file", "A.app", "folder/..", ""};
  const auto mac = readMacItems(folder_.path(), names, disk_, policy_);
  const auto ofLinux = LinuxFileSystem(hostFolders(), hostVolume).readItems(folder_.path(), names);
  ASSERT_TRUE(mac && ofLinux);
  ASSERT_EQ(mac->items().size(), ofLinux->items().size());
  for (std::size_t index = 0; index < mac->items().size(); ++index) {
    const Item& here = mac->items()[index];
    const Item& there = ofLinux->items()[index];
    EXPECT_EQ(mac->path(here), ofLinux->path(there));
    EXPECT_EQ(here.isEntered, there.isEntered);
    EXPECT_EQ(here.values->isUploaded, there.values->isUploaded);
    EXPECT_EQ(here.values->uploadingError, there.values->uploadingError);
  }
}

}  // namespace
}  // namespace cirrovane::test
