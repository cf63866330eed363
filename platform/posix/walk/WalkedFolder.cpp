#include "platform/posix/walk/WalkedFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <ranges>
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

/// Writes the text before the end position and moves that to its front.
void putBefore(std::string& path, std::size_t& end, std::string_view text) {
  end -= text.size();
  text.copy(path.data() + end, text.size());
}

bool endsWithSlash(std::string_view path) {
  return !path.empty() && path.back() == '/';
}

}  // namespace

std::string pathOf(const WalkedFolder& folder) {
  return folder.parent == nullptr ? folder.name : pathOf(*folder.parent, folder.name);
}

std::string pathOf(const WalkedFolder& folder, std::string_view itemName) {
  // Measured first and then written from its end, as the folders lead from the item up: one allocation, of the path's
  // own size, for each of what may be half a million paths.
  std::size_t length = itemName.size();
  const WalkedFolder* top = &folder;
  for (; top->parent != nullptr; top = top->parent) {
    length += top->name.size() + 1;
  }
  const std::string_view slashBelowTop = endsWithSlash(top->name) ? "" : "/";
  length += top->name.size() + slashBelowTop.size();

  std::string path(length, '/');
  std::size_t end = length;
  putBefore(path, end, itemName);
  for (const WalkedFolder* step = &folder; step != top; step = step->parent) {
    --end;
    putBefore(path, end, step->name);
  }
  putBefore(path, end, slashBelowTop);
  putBefore(path, end, top->name);
  return path;
}

int openFolder(int directory, const char* name, int flags) {
  return ::openat(directory, name, flags);
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
  for (const WalkedFolder* step : std::views::reverse(missing)) {
    const Descriptor parent = current.descriptor;
    current = openBelow(*step, parent.get());
    if (current.result != FolderOpening::opened) {
      return current;
    }
    entries_.push_front({step, current.descriptor});
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
    const int descriptor = open_(directory, folder.name.c_str(), flags);
    if (descriptor >= 0) {
      return {FolderOpening::opened, std::make_shared<const FileDescriptor>(descriptor)};
    }
    const int error = errno;
    if (error == EINTR) {
      continue;
    }
    if (!meansExhaustion(error)) {
      return {FolderOpening::unreadable, nullptr, error};
    }
    if (entries_.empty()) {
      return {FolderOpening::exhausted, nullptr};
    }
    entries_.pop_back();
  }
}

}  // namespace cirrovane
