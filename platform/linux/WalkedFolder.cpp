#include "platform/linux/WalkedFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

constexpr std::size_t kLeastCapacity = 8;
constexpr std::size_t kGreatestCapacity = 256;

bool meansExhaustion(int error) {
  return error == EMFILE || error == ENFILE || error == ENOMEM;
}

void appendComponent(std::string& path, std::string_view name) {
  if (path.empty() || path.back() != '/') {
    path += '/';
  }
  path += name;
}

}  // namespace

std::string pathOf(const WalkedFolder& folder) {
  std::vector<const WalkedFolder*> chain;
  std::size_t length = 0;
  for (const WalkedFolder* step = &folder; step != nullptr; step = step->parent) {
    chain.push_back(step);
    length += step->name.size() + 1;
  }
  std::string path;
  path.reserve(length);
  path = chain.back()->name;
  for (auto step = chain.rbegin() + 1; step != chain.rend(); ++step) {
    appendComponent(path, (*step)->name);
  }
  return path;
}

std::string pathOf(const WalkedFolder& folder, std::string_view itemName) {
  std::string path = pathOf(folder);
  appendComponent(path, itemName);
  return path;
}

FolderDescriptors::Opened FolderDescriptors::open(const WalkedFolder& folder) {
  const std::lock_guard lock(mutex_);
  // Climb to the nearest folder that is still open, then come down again, opening one name at a time.
  std::vector<const WalkedFolder*> missing;
  Opened current{FolderOpening::unreadable, nullptr};
  for (const WalkedFolder* step = &folder; step != nullptr; step = step->parent) {
    if (const auto entry = find(*step); entry != entries_.end()) {
      entries_.splice(entries_.begin(), entries_, entry);
      current = {FolderOpening::opened, entry->descriptor};
      break;
    }
    missing.push_back(step);
  }
  for (auto step = missing.rbegin(); step != missing.rend(); ++step) {
    const Descriptor parent = current.descriptor;
    current = openBelow(**step, parent.get());
    if (current.result != FolderOpening::opened) {
      return current;
    }
    entries_.push_front({*step, current.descriptor});
    if (entries_.size() > capacity_) {
      entries_.pop_back();
    }
  }
  return current;
}

void FolderDescriptors::forget(const WalkedFolder& folder) {
  const std::lock_guard lock(mutex_);
  if (const auto entry = find(folder); entry != entries_.end()) {
    entries_.erase(entry);
  }
}

std::size_t FolderDescriptors::reasonableCapacity() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
    return kLeastCapacity;
  }
  return std::clamp<std::size_t>(limit.rlim_cur / 4, kLeastCapacity, kGreatestCapacity);
}

FolderDescriptors::Entries::iterator FolderDescriptors::find(const WalkedFolder& folder) {
  return std::ranges::find(entries_, &folder, &Entry::folder);
}

FolderDescriptors::Opened FolderDescriptors::openBelow(const WalkedFolder& folder, const FileDescriptor* parent) {
  // The folder that the user chose may be a link; everything below it is taken as it stands.
  const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | (parent != nullptr ? O_NOFOLLOW : 0);
  const int directory = parent != nullptr ? parent->get() : AT_FDCWD;
  while (true) {
    const int descriptor = ::openat(directory, folder.name.c_str(), flags);
    if (descriptor >= 0) {
      return {FolderOpening::opened, std::make_shared<const FileDescriptor>(descriptor)};
    }
    const int error = errno;
    if (error == EINTR) {
      continue;
    }
    if (!meansExhaustion(error)) {
      return {FolderOpening::unreadable, nullptr};
    }
    if (entries_.empty()) {
      return {FolderOpening::exhausted, nullptr};
    }
    entries_.pop_back();
  }
}

}  // namespace cirrovane
