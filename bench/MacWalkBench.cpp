// What the walk of a Mac does besides the system's calls: batches, order, refusals, paths and values, over entries that
// lie packed in memory and a cloud that answers at once. Prints lines of: what, how, and the processor's seconds an
// entry of each repetition, with tabs between.

#include "platform/macos/plain/MacWalk.h"
#include "platform/posix/walk/WalkedFolder.h"
#include "tests/macos/EntryPacker.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kEntries = 200'000;
/// As much as a walk asks for at a time.
constexpr std::size_t kStretchBytes = std::size_t{16} * 1024;

/// Entries that are listed at a time.
struct Stretch {
  std::string bytes;
  int count = 0;
};

class UploadedItem final : public ResourceDictionary {
 public:
  std::optional<bool> boolean(ResourceKey key) const override {
    return key == ResourceKey::isUbiquitousItem || key == ResourceKey::ubiquitousItemIsUploaded;
  }
  std::optional<DownloadingStatus> downloadingStatus() const override { return DownloadingStatus::current; }
  std::optional<std::string> errorText(ResourceKey /*key*/) const override { return std::nullopt; }
};

class NoPolicy final : public MaterializationCalls {
 public:
  std::optional<int> policy(PolicyScope /*scope*/) const override { return kMaterializationOff; }
  bool setPolicy(PolicyScope /*scope*/, int /*policy*/) const override { return true; }
};

/// Files in folders of the same size, each of which lists the same.
class PackedDisk final : public MacWalkCalls {
 public:
  explicit PackedDisk(std::size_t folderCount) {
    for (std::size_t number = 0; number < kEntries / folderCount; ++number) {
      add(files_, fmt::format("A document with a usual name {}.pages", number), kRegularFileType);
    }
    for (std::size_t number = 0; folderCount > 1 && number < folderCount; ++number) {
      add(folders_, fmt::format("Folder {}", number), kFolderType);
    }
  }

  int openFolder(int directory, const char* /*name*/, int flags) const override {
    const int descriptor = cirrovane::openFolder(AT_FDCWD, "/", flags & ~O_NOFOLLOW);
    const std::lock_guard lock(mutex_);
    open_[descriptor] = {directory == AT_FDCWD && !folders_.empty() ? &folders_ : &files_, 0};
    return descriptor;
  }
  int listEntries(int descriptor, std::span<char> target) const override {
    const std::lock_guard lock(mutex_);
    OpenFolder& folder = open_.at(descriptor);
    if (folder.next == folder.stretches->size()) {
      return 0;
    }
    const Stretch& stretch = (*folder.stretches)[folder.next++];
    std::ranges::copy(stretch.bytes, target.begin());
    return stretch.count;
  }
  int readEntry(int /*descriptor*/, const char* /*name*/, std::span<char> /*target*/) const override { return -1; }
  std::string withoutLinks(const std::string& path) const override { return path; }
  bool isPackageExtension(std::string_view /*extension*/) const override { return false; }
  bool readCloudState(const std::string& /*path*/, bool /*isFolder*/, WalkScope /*scope*/,
                      const ResourceTaker& take) const override {
    take(UploadedItem());
    return true;
  }

 private:
  struct OpenFolder {
    const std::vector<Stretch>* stretches = nullptr;
    std::size_t next = 0;
  };

  static void add(std::vector<Stretch>& stretches, const std::string& name, std::uint32_t type) {
    const std::string entry =
        test::packed({.name = name, .type = type, .error = 0, .flags = 0, .modifiedSeconds = 1'700'000'000});
    if (stretches.empty() || stretches.back().bytes.size() + entry.size() > kStretchBytes) {
      stretches.emplace_back();
    }
    stretches.back().bytes += entry;
    ++stretches.back().count;
  }

  std::vector<Stretch> files_;
  std::vector<Stretch> folders_;
  mutable std::mutex mutex_;
  mutable std::unordered_map<int, OpenFolder> open_;
};

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

double walkOnce(const std::shared_ptr<const PackedDisk>& disk, std::size_t threadCount) {
  const NoPolicy policy;
  const double start = processorSeconds();
  std::size_t uploaded = 0;
  {
    const auto walk = startMacWalk({"/Users/demo/Work"}, disk, policy, threadCount);
    while (const ItemBatch* batch = walk->next()) {
      uploaded += static_cast<std::size_t>(std::ranges::count_if(
          batch->items(), [](const Item& item) { return item.values && item.values->isUploaded.value_or(false); }));
    }
  }
  const double spent = processorSeconds() - start;
  if (uploaded != kEntries) {
    throw std::runtime_error("entries are missing");
  }
  return spent / static_cast<double>(kEntries);
}

void measure(std::string_view what, std::size_t folderCount, int repetitions) {
  const auto disk = std::make_shared<const PackedDisk>(folderCount);
  for (const std::size_t threadCount : {0U, 4U}) {
    fmt::print("{}\t{} threads", what, threadCount);
    for (int repetition = 0; repetition < repetitions; ++repetition) {
      fmt::print("\t{:.9f}", walkOnce(disk, threadCount));
    }
    fmt::print("\n");
  }
}

}  // namespace
}  // namespace cirrovane

int main(int argc, char** argv) {
  try {
    const int repetitions = argc > 1 ? std::atoi(argv[1]) : 21;
    cirrovane::measure("in one folder", 1, repetitions);
    cirrovane::measure("in 1,000 folders", 1000, repetitions);
    return 0;
  } catch (const std::exception& error) {
    fmt::print(stderr, "mac_walk_bench: {}\n", error.what());
    return 1;
  }
}
