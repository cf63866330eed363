#include "tests/platform/WalkedItems.h"

#include "base/FileDescriptor.h"
#include "platform/linux/host/HostDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/linux/walk/LinuxWalk.h"
#include "platform/linux/walk/Packages.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <linux/capability.h>
#include <stdexcept>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

std::optional<std::string> copyOf(std::optional<std::string_view> text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

WalkedValues copyOf(const ResourceValues& values) {
  return {.isDirectory = values.isDirectory,
          .isUbiquitousItem = values.isUbiquitousItem,
          .isUploaded = values.isUploaded,
          .isUploading = values.isUploading,
          .hasUnresolvedConflicts = values.hasUnresolvedConflicts,
          .downloadingStatus = values.downloadingStatus,
          .uploadingError = copyOf(values.uploadingError),
          .downloadingError = copyOf(values.downloadingError),
          .contentModificationDate = values.contentModificationDate};
}

/// The recursion of the naive walk. It keeps one folder open and comes back up by "..", so that no depth is too much.
class NaiveWalk {
 public:
  explicit NaiveWalk(Paths paths) : paths_(paths) {}

  void visit(FileDescriptor& folder, const std::string& path) {
    if (!isListable(folder.get())) {
      return;
    }
    for (const std::string& name : namesIn(folder.get(), path)) {
      FileDescriptor child(openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
      if (!child.isOpen()) {
        throw std::runtime_error("cannot open " + name);
      }
      folder = FileDescriptor();
      visit(child, paths_ == Paths::wanted ? path + "/" + name : path);
      folder = FileDescriptor(openat(child.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
  }

  std::vector<std::string> takeFound() { return std::move(found_); }

 private:
  static bool isListable(int folder) {
    std::array<char, 512> attribute{};
    const ssize_t length = fgetxattr(folder, "user.icloud", attribute.data(), attribute.size());
    const std::string text = "\n" + std::string(attribute.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return (text + "\n").find("\nisListable=false\n") == std::string::npos;
  }

  /// Notes the folder's entries and gives back those that are to be entered.
  std::vector<std::string> namesIn(int folder, const std::string& path) {
    std::vector<std::string> toEnter;
    DIR* stream = fdopendir(dup(folder));
    while (const dirent* entry = readdir(stream)) {
      const std::string name = entry->d_name;
      if (name.front() == '.') {
        continue;
      }
      found_.push_back(paths_ == Paths::wanted ? path + "/" + name : name);
      struct stat status {};
      if (fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode) &&
          !isPackageName(name)) {
        toEnter.push_back(name);
      }
    }
    closedir(stream);
    return toEnter;
  }

  Paths paths_;
  std::vector<std::string> found_;
};

WalkKind kindWith(const char* name, const WalkOptions& options) {
  return {name, [options](const std::string& folder) { return startLinuxWalk(WalkRequest{folder}, options); }};
}

struct Capabilities {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  std::array<__user_cap_data_struct, 2> sets{};

  void read() {
    if (syscall(SYS_capget, &header, sets.data()) != 0) {
      throw std::runtime_error("no capabilities to read");
    }
  }
  void write() {
    if (syscall(SYS_capset, &header, sets.data()) != 0) {
      throw std::runtime_error("capabilities cannot be changed");
    }
  }
};

}  // namespace

std::vector<WalkedItem> restOf(FolderWalk& walk, Paths paths) {
  std::vector<WalkedItem> items;
  while (const ItemBatch* batch = walk.next()) {
    EXPECT_FALSE(batch->items().empty());
    for (const Item& item : batch->items()) {
      WalkedItem& copy = items.emplace_back();
      copy.name = item.name;
      if (paths == Paths::wanted) {
        copy.path = batch->path(item);
      }
      if (item.values) {
        copy.values = copyOf(*item.values);
      }
    }
  }
  EXPECT_EQ(walk.next(), nullptr);
  return items;
}

WalkedItem onlyItemNamed(const std::vector<WalkedItem>& items, const std::string& name) {
  const auto isIt = [&](const WalkedItem& item) { return item.name == name; };
  EXPECT_EQ(std::ranges::count_if(items, isIt), 1) << name;
  const auto found = std::ranges::find_if(items, isIt);
  return found != items.end() ? *found : WalkedItem();
}

std::vector<std::string> pathsOf(const std::vector<WalkedItem>& items) {
  std::vector<std::string> paths;
  std::ranges::transform(items, std::back_inserter(paths), &WalkedItem::path);
  return paths;
}

std::vector<std::string> namesOf(const std::vector<WalkedItem>& items) {
  std::vector<std::string> names;
  std::ranges::transform(items, std::back_inserter(names), &WalkedItem::name);
  return names;
}

std::vector<std::string> naiveWalk(const std::string& folder, Paths paths) {
  FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.isOpen()) {
    throw std::runtime_error("cannot open " + folder);
  }
  NaiveWalk walk(paths);
  walk.visit(descriptor, folder);
  return walk.takeFound();
}

std::ostream& operator<<(std::ostream& out, const WalkKind& kind) {
  return out << kind.name;
}

const std::vector<WalkKind>& allWalkKinds() {
  static const std::vector<WalkKind> kinds = {
      {"asFileSystem",
       [](const std::string& folder) { return LinuxFileSystem(hostFolders(), hostVolume).enumerate(folder); }},
      kindWith("onCallersThread", {.threadCount = 0}),
      kindWith("onManyThreads", {.threadCount = 8}),
      kindWith("withoutWorkingDirectory", {.usesWorkingDirectory = false}),
      kindWith("withOneOpenFolder", {.openFolderCapacity = 1}),
  };
  return kinds;
}

std::vector<WalkedItem> walked(const WalkKind& kind, const std::string& folder, Paths paths) {
  const std::unique_ptr<FolderWalk> walk = kind.start(folder);
  if (!walk) {
    ADD_FAILURE() << "no walk";
    return {};
  }
  return restOf(*walk, paths);
}

WithoutPrivileges::WithoutPrivileges() {
  // Of this thread alone: the C library would change a user of every thread.
  Capabilities capabilities;
  capabilities.read();
  effective_ = capabilities.sets[0].effective;
  capabilities.sets[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
  capabilities.write();
}

WithoutPrivileges::~WithoutPrivileges() {
  Capabilities capabilities;
  capabilities.read();
  capabilities.sets[0].effective = effective_;
  capabilities.write();
}

FewDescriptors::FewDescriptors(int count) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit_ = limit.rlim_cur;
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_cur, 64);
  setrlimit(RLIMIT_NOFILE, &limit);
  for (int taken = open("/dev/null", O_RDONLY | O_CLOEXEC); taken >= 0; taken = dup(taken_.front())) {
    taken_.push_back(taken);
  }
  for (int left = 0; left < count; ++left) {
    close(taken_.at(taken_.size() - 1));
    taken_.pop_back();
  }
}

FewDescriptors::~FewDescriptors() {
  for (const int descriptor : taken_) {
    close(descriptor);
  }
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit_;
  setrlimit(RLIMIT_NOFILE, &limit);
}

std::size_t openDescriptorCount() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace cirrovane::test
