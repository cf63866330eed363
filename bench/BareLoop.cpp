// What a scan cannot do without: lists every folder and reads the attribute of every item, and makes nothing of either.
// No order, no values, no paths.

#include "base/FileDescriptor.h"
#include "platform/linux/walk/ICloudAttribute.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <dirent.h>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <memory>
#include <mutex>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

class BareLoop {
 public:
  BareLoop(const std::string& folder, bool readsStatus) : readsStatus_(readsStatus) {
    listings_.push_back(open(AT_FDCWD, folder.c_str()));
  }

  std::uint64_t run(int threadCount) {
    std::vector<std::thread> threads;
    for (int index = 0; index < threadCount; ++index) {
      threads.emplace_back([this] { work(); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    return itemCount_;
  }

 private:
  using Folder = std::unique_ptr<FileDescriptor>;
  using Entries = std::array<char, 64 * 1024>;

  static Folder open(int directory, const char* name) {
    auto folder = std::make_unique<FileDescriptor>(openat(directory, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder->get() < 0) {
      throw std::system_error(errno, std::generic_category(), name);
    }
    return folder;
  }

  void work() {
    // A working directory of this thread's own: a name alone is the shortest way to a file.
    unshare(CLONE_FS);
    const auto entries = std::make_unique<Entries>();
    std::unique_lock lock(mutex_);
    while (true) {
      somethingToDo_.wait(lock, [this] { return !listings_.empty() || workingCount_ == 0; });
      if (listings_.empty()) {
        return;
      }
      const std::shared_ptr<FileDescriptor> folder = std::move(listings_.back());
      listings_.pop_back();
      ++workingCount_;
      lock.unlock();
      readStretch(folder, *entries);
      lock.lock();
      --workingCount_;
      somethingToDo_.notify_all();
    }
  }

  void readStretch(const std::shared_ptr<FileDescriptor>& folder, Entries& entries) {
    const ssize_t length = getdents64(folder->get(), entries.data(), entries.size());
    if (length <= 0) {
      return;
    }
    // Whoever comes next reads on in the same folder meanwhile.
    add(folder);
    if (fchdir(folder->get()) != 0) {
      throw std::system_error(errno, std::generic_category(), "fchdir");
    }
    std::uint64_t count = 0;
    for (std::size_t position = 0; position < static_cast<std::size_t>(length);) {
      const auto* entry = reinterpret_cast<const dirent64*>(entries.data() + position);
      position += entry->d_reclen;
      if (entry->d_name[0] != '.') {
        readItem(*folder, *entry);
        ++count;
      }
    }
    itemCount_ += count;
  }

  void readItem(const FileDescriptor& folder, const dirent64& entry) {
    std::array<char, 512> attribute;
    lgetxattr(entry.d_name, kICloudAttributeName, attribute.data(), attribute.size());
    if (readsStatus_) {
      struct statx status;
      statx(AT_FDCWD, entry.d_name, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &status);
    }
    if (entry.d_type == DT_DIR) {
      add(open(folder.get(), entry.d_name));
    }
  }

  void add(std::shared_ptr<FileDescriptor> folder) {
    const std::lock_guard lock(mutex_);
    listings_.push_back(std::move(folder));
    somethingToDo_.notify_one();
  }

  const bool readsStatus_;
  std::atomic<std::uint64_t> itemCount_ = 0;
  std::mutex mutex_;
  std::condition_variable somethingToDo_;
  std::vector<std::shared_ptr<FileDescriptor>> listings_;
  int workingCount_ = 0;
};

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  std::string folder;
  bool readsStatus = false;
  int threadCount = 1;
  for (const std::string_view argument : std::vector<std::string_view>(arguments + 1, arguments + argumentCount)) {
    if (argument == "--statx") {
      readsStatus = true;
    } else if (argument == "--two-threads") {
      threadCount = 2;
    } else {
      folder = argument;
    }
  }
  if (folder.empty()) {
    std::cerr << "Usage: bare_loop [--statx] [--two-threads] FOLDER\n";
    return 2;
  }
  try {
    std::cout << fmt::format("{} items\n", cirrovane::BareLoop(folder, readsStatus).run(threadCount));
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "bare_loop: " << error.what() << '\n';
    return 1;
  }
}
