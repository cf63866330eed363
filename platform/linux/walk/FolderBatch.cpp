#include "platform/linux/walk/FolderBatch.h"

#include "base/Path.h"
#include "platform/linux/walk/ICloudAttribute.h"
#include "platform/linux/walk/Packages.h"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace cirrovane {
namespace {

/// Some 1,500 entries: many enough to spread one flat folder over threads at little cost, few enough to stay in cache.
constexpr std::size_t kEntriesSize = std::size_t{64} * 1024;
/// The longest entry that the kernel can write.
constexpr std::size_t kLargestEntry = sizeof(dirent64) + 8;
constexpr std::size_t kUsualAttributeSize = 512;
/// The kernel stores no longer attribute.
constexpr std::size_t kLargestAttribute = std::size_t{64} * 1024;

ssize_t listEntries(const ListingCall& list, int descriptor, std::span<char> target) {
  ssize_t length = 0;
  do {
    length = list(descriptor, target.data(), target.size());
  } while (length < 0 && errno == EINTR);
  return length;
}

/// Reads an item's attribute by the call, which takes a buffer and its size. The attribute's bytes; absent with errno
/// set when there are none to be had.
template <class Call>
std::optional<std::string_view> readAttribute(std::vector<char>& buffer, Call call) {
  ssize_t length = -1;
  do {
    length = call(buffer.data(), buffer.size());
    if (length < 0 && errno == ERANGE && buffer.size() < kLargestAttribute) {
      buffer.resize(kLargestAttribute);
      errno = EINTR;
    }
  } while (length < 0 && errno == EINTR);
  return length >= 0 ? std::optional(std::string_view(buffer.data(), static_cast<std::size_t>(length))) : std::nullopt;
}

/// Whether an error of reading an attribute only says that there is none.
bool meansNoAttribute(int error) {
  return error == ENODATA || error == ENOTSUP;
}

std::optional<struct stat> statItem(int descriptor, const char* name) {
  struct stat status {};
  if (fstatat(descriptor, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return std::nullopt;
  }
  return status;
}

Time timeOf(const timespec& stamp) {
  using Microseconds = std::chrono::microseconds;
  constexpr std::int64_t kLimit = std::numeric_limits<std::int64_t>::max() / 1'000'000 - 1;
  const std::int64_t seconds = std::min(std::max<std::int64_t>(stamp.tv_sec, -kLimit), kLimit);
  return Time(std::chrono::seconds(seconds) +
              std::chrono::floor<Microseconds>(std::chrono::nanoseconds(stamp.tv_nsec)));
}

/// Whether anything of the item's state is reported together with its date.
bool isDateOfInterest(const ResourceValues& values) {
  return values.isUbiquitousItem && !values.isDirectory &&
         (values.uploadingError || values.downloadingError || !values.isUploaded.value_or(true) ||
          values.isUploading.value_or(false) ||
          values.downloadingStatus.value_or(DownloadingStatus::current) != DownloadingStatus::current);
}

}  // namespace

FolderBatch::FolderBatch() : entries_(kEntriesSize), attribute_(kUsualAttributeSize) {}

bool FolderBatch::allowsListing(int descriptor) {
  const auto attribute = readAttribute(attribute_, [&](char* target, std::size_t size) {
    return fgetxattr(descriptor, kICloudAttributeName, target, size);
  });
  return attribute ? cirrovane::allowsListing(*attribute) : meansNoAttribute(errno);
}

FolderBatch::Listing FolderBatch::readNames(const WalkedFolder& folder, int descriptor, const ListingCall& list) {
  becomeEmpty();
  folder_ = &folder;
  std::size_t used = 0;
  while (entries_.size() - used >= kLargestEntry) {
    const ssize_t length = listEntries(list, descriptor, std::span(entries_).subspan(used));
    if (length == 0) {
      return Listing::ended;
    }
    if (length < 0) {
      // The system's word for a name that is longer than the space that is left.
      return errno == EINVAL && used > 0 ? Listing::hasMore : Listing::failed;
    }
    const std::size_t end = used + static_cast<std::size_t>(length);
    while (used < end) {
      const auto* entry = reinterpret_cast<const dirent64*>(entries_.data() + used);
      addEntry(descriptor, entry->d_name, entry->d_type);
      used += entry->d_reclen;
    }
  }
  return Listing::hasMore;
}

void FolderBatch::takeNames(const WalkedFolder& folder, int descriptor, const std::vector<std::string>& names) {
  becomeEmpty();
  folder_ = &folder;
  for (const std::string& name : names) {
    // Only a name: nothing that leads elsewhere.
    if (name.empty() || name.find('/') != std::string::npos || name.find('\0') != std::string::npos) {
      continue;
    }
    const auto status = statItem(descriptor, name.c_str());
    if (!status && (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG)) {
      continue;
    }
    const std::string& kept = texts_.emplace_back(name);
    addEntry(descriptor, kept, status && S_ISDIR(status->st_mode) ? DT_DIR : DT_REG);
  }
}

void FolderBatch::becomeEmpty() {
  unreadable_ = nullptr;
  items_.clear();
  foldersToEnter_.clear();
  texts_.clear();
}

void FolderBatch::becomeUnreadable(const WalkedFolder& folder) {
  becomeEmpty();
  unreadable_ = &folder;
  // The folder that a walk starts at is named by its whole path.
  const std::string_view name = folder.name;
  items_.push_back({lastPathComponent(name), std::nullopt});
}

void FolderBatch::addEntry(int descriptor, std::string_view name, unsigned char type) {
  if (name.starts_with('.')) {
    return;
  }
  Item& item = items_.emplace_back();
  item.name = name;
  item.values.emplace();
  if (type == DT_UNKNOWN) {
    const auto status = statItem(descriptor, name.data());
    if (!status) {
      item.values.reset();
      return;
    }
    type = S_ISDIR(status->st_mode) ? DT_DIR : DT_REG;
  }
  item.values->isDirectory = type == DT_DIR;
  if (type == DT_DIR && !isPackageName(name)) {
    item.isEntered = true;
    foldersToEnter_.push_back(name);
  }
}

void FolderBatch::readValues(int descriptor, const std::string& attributePathPrefix) {
  std::string attributePath = attributePathPrefix;
  for (Item& item : items_) {
    if (item.values) {
      readItem(descriptor, item, attributePath, attributePathPrefix.size());
    }
  }
}

void FolderBatch::readItem(int descriptor, Item& item, std::string& attributePath, std::size_t prefixLength) {
  // A name out of the kernel's own buffer ends in a NUL.
  const char* path = item.name.data();
  if (prefixLength > 0) {
    attributePath.resize(prefixLength);
    attributePath += item.name;
    path = attributePath.c_str();
  }
  const auto attribute = readAttribute(
      attribute_, [&](char* target, std::size_t size) { return lgetxattr(path, kICloudAttributeName, target, size); });
  if (!attribute) {
    if (!meansNoAttribute(errno)) {
      item.values.reset();
    }
    return;
  }
  const bool isDirectory = item.values->isDirectory;
  item.values = parseICloudAttribute(*attribute);
  if (!item.values) {
    return;
  }
  item.values->isDirectory = isDirectory;
  for (std::optional<std::string_view>* text : {&item.values->uploadingError, &item.values->downloadingError}) {
    if (*text) {
      *text = texts_.emplace_back(**text);
    }
  }
  if (isDateOfInterest(*item.values)) {
    // By the working directory where there is one: threads share descriptors, and the kernel counts each use of one.
    if (const auto status = statItem(prefixLength > 0 ? descriptor : AT_FDCWD, item.name.data())) {
      item.values->contentModificationDate = timeOf(status->st_mtim);
    } else {
      item.values.reset();
    }
  }
}

}  // namespace cirrovane
