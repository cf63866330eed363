#include "platform/linux/walk/LinuxWalkReader.h"

#include "platform/linux/walk/ICloudAttribute.h"
#include "platform/linux/walk/Packages.h"
#include "platform/posix/FileTime.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <span>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

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

/// Whether anything of the item's state is reported together with its date.
bool isDateOfInterest(const ResourceValues& values) {
  return values.isUbiquitousItem && !values.isDirectory &&
         (values.uploadingError || values.downloadingError || !values.isUploaded.value_or(true) ||
          values.isUploading.value_or(false) ||
          values.downloadingStatus.value_or(DownloadingStatus::current) != DownloadingStatus::current);
}

/// A type as a listing has it.
unsigned char typeOf(const struct stat& status) {
  return static_cast<unsigned char>(IFTODT(status.st_mode));
}

ItemKind kindOf(unsigned char type) {
  if (type == DT_DIR) {
    return ItemKind::folder;
  }
  return type == DT_REG ? ItemKind::file : ItemKind::other;
}

Concealment concealmentOf(std::string_view name, bool isFolder) {
  if (name.starts_with('.')) {
    return Concealment::hidden;
  }
  return isFolder && isPackageName(name) ? Concealment::package : Concealment::none;
}

}  // namespace

LinuxWalkReader::LinuxWalkReader(ListingCall list, bool hasWorkingDirectory, WalkScope scope)
    : list_(std::move(list)),
      hasWorkingDirectory_(hasWorkingDirectory),
      scope_(scope),
      attribute_(kUsualAttributeSize) {}

void LinuxWalkReader::addEntry(int descriptor, std::string_view name, unsigned char type, WalkBatch& batch) const {
  const bool isWhole = scope_ == WalkScope::everything;
  if (name.starts_with('.') && (!isWhole || name == "." || name == "..")) {
    return;
  }
  Item& item = batch.add(name);
  if (type == DT_UNKNOWN) {
    const auto status = statItem(descriptor, name.data());
    if (!status) {
      return;
    }
    type = typeOf(*status);
  }
  item.kind = kindOf(type);
  item.concealment = concealmentOf(name, type == DT_DIR);
  item.values.emplace().isDirectory = type == DT_DIR;
  if (type == DT_DIR && (isWhole || item.concealment == Concealment::none)) {
    batch.enter(item);
  }
}

bool LinuxWalkReader::allowsListing(int descriptor) {
  const auto attribute = readAttribute(attribute_, [&](char* target, std::size_t size) {
    return fgetxattr(descriptor, kICloudAttributeName, target, size);
  });
  return attribute ? cirrovane::allowsListing(*attribute) : meansNoAttribute(errno);
}

Listing LinuxWalkReader::readNames(int descriptor, WalkBatch& batch) {
  const std::span<char> entries = batch.entries();
  std::size_t used = 0;
  while (entries.size() - used >= kLargestEntry) {
    const ssize_t length = listEntries(list_, descriptor, entries.subspan(used));
    if (length == 0) {
      return Listing::ended;
    }
    if (length < 0) {
      if (errno == ENOENT) {
        return Listing::gone;
      }
      // The system's word for a name that is longer than the space that is left.
      return errno == EINVAL && used > 0 ? Listing::hasMore : Listing::failed;
    }
    const std::size_t end = used + static_cast<std::size_t>(length);
    while (used < end) {
      const auto* entry = reinterpret_cast<const dirent64*>(entries.data() + used);
      addEntry(descriptor, entry->d_name, entry->d_type, batch);
      used += entry->d_reclen;
    }
  }
  return Listing::hasMore;
}

void LinuxWalkReader::readName(int descriptor, const std::string& name, WalkBatch& batch) {
  const auto status = statItem(descriptor, name.c_str());
  if (!status && (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG)) {
    return;
  }
  addEntry(descriptor, batch.keep(name), status ? typeOf(*status) : static_cast<unsigned char>(DT_REG), batch);
}

void LinuxWalkReader::readValues(int descriptor, WalkBatch& batch) {
  const bool isWithin = hasWorkingDirectory_ && fchdir(descriptor) == 0;
  // What stands before a name to make a path that this thread can reach the item by.
  std::string attributePath = isWithin ? std::string() : fmt::format("/proc/self/fd/{}/", descriptor);
  const std::size_t prefixLength = attributePath.size();
  for (Item& item : batch.itemsToFill()) {
    if (item.values) {
      readItem(descriptor, item, attributePath, prefixLength, batch);
    }
  }
}

void LinuxWalkReader::readItem(int descriptor, Item& item, std::string& attributePath, std::size_t prefixLength,
                               WalkBatch& batch) {
  // A name out of the kernel's own buffer, or a kept one, ends in a NUL.
  const char* path = item.name.data();
  if (prefixLength > 0) {
    attributePath.resize(prefixLength);
    attributePath += item.name;
    path = attributePath.c_str();
  }
  const auto attribute = readAttribute(
      attribute_, [&](char* target, std::size_t size) { return lgetxattr(path, kICloudAttributeName, target, size); });
  if (!attribute) {
    const int error = errno;
    if (!meansNoAttribute(error)) {
      item.values.reset();
    }
    if (error == ENOENT && scope_ == WalkScope::everything) {
      // Whatever it was, it is gone since the folder was listed.
      item.kind = ItemKind::other;
    }
    return;
  }
  const bool isDirectory = item.values->isDirectory;
  item.values = parseICloudAttribute(*attribute, scope_);
  if (!item.values) {
    return;
  }
  item.values->isDirectory = isDirectory;
  for (std::optional<std::string_view>* text : {&item.values->uploadingError, &item.values->downloadingError}) {
    if (*text) {
      *text = batch.keep(std::string(**text));
    }
  }
  if (scope_ == WalkScope::shown && isDateOfInterest(*item.values)) {
    // By the working directory where there is one: threads share descriptors, and the kernel counts each use of one.
    if (const auto status = statItem(prefixLength > 0 ? descriptor : AT_FDCWD, item.name.data())) {
      item.values->contentModificationDate = timeOf(status->st_mtim);
      item.values->fileSize = status->st_size;
    } else {
      item.values.reset();
    }
  }
}

}  // namespace cirrovane
