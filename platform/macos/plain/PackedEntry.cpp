#include "platform/macos/plain/PackedEntry.h"

#include "platform/posix/FileTime.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace cirrovane {
namespace {

constexpr std::uint32_t kKnownAttributes =
    kReturnedAttributes | kErrorAttribute | kNameAttribute | kTypeAttribute | kModifiedAttribute | kFlagsAttribute;

/// Which attributes are there, by group: those common to all, and those of volumes, folders, files and forks.
using AttributeGroups = std::array<std::uint32_t, 5>;
constexpr std::size_t kFileGroup = 3;

/// Where the bytes of a value are: from the place of this on.
struct Reference {
  std::int32_t offset;
  std::uint32_t length;
};

struct Stamp {
  std::int64_t seconds;
  std::int64_t nanoseconds;
};

/// Reads an entry's values one after another; each stands at a multiple of four bytes only.
class Fields {
 public:
  explicit Fields(std::span<const char> entry) : entry_(entry) {}

  std::size_t position() const { return position_; }

  /// False when the entry ends before the value does.
  template <class Value>
  bool read(Value& value) {
    if (entry_.size() - position_ < sizeof value) {
      return false;
    }
    std::memcpy(&value, entry_.data() + position_, sizeof value);
    position_ += sizeof value;
    return true;
  }

 private:
  std::span<const char> entry_;
  std::size_t position_ = 0;
};

/// The name that a reference at a position leads to; absent when it leads out of the entry, or to what is no name.
std::optional<std::string_view> nameAt(std::span<const char> entry, std::size_t position, const Reference& reference) {
  const std::int64_t begin = static_cast<std::int64_t>(position) + reference.offset;
  if (begin < 0 || static_cast<std::uint64_t>(begin) > entry.size() ||
      entry.size() - static_cast<std::size_t>(begin) < reference.length || reference.length < 2) {
    return std::nullopt;
  }
  const std::string_view text(entry.data() + begin, reference.length);
  const std::string_view name = text.substr(0, text.find('\0'));
  const bool isName = !name.empty() && name.size() < text.size() && name.find('/') == std::string_view::npos;
  return isName ? std::optional(name) : std::nullopt;
}

EntryKind kindOf(std::uint32_t type) {
  if (type == kRegularFileType) {
    return EntryKind::regularFile;
  }
  return type == kFolderType ? EntryKind::folder : EntryKind::other;
}

std::optional<PackedEntry> readEntry(std::span<const char> bytes) {
  Fields fields(bytes);
  std::uint32_t length = 0;
  AttributeGroups groups{};
  if (!fields.read(length) || !fields.read(groups)) {
    return std::nullopt;
  }
  const std::uint32_t common = groups[0];
  const bool hasSize = groups[kFileGroup] == kSizeAttribute;
  AttributeGroups known{common};
  known[kFileGroup] = hasSize ? kSizeAttribute : 0;
  if (groups != known || (common & ~kKnownAttributes) != 0 || (common & kNameAttribute) == 0) {
    // A value that nobody asked for has a length that nobody knows.
    return std::nullopt;
  }
  const auto has = [common](std::uint32_t attribute) { return (common & attribute) != 0; };
  std::uint32_t error = 0;
  Reference reference{};
  std::uint32_t type = 0;
  Stamp modified{};
  std::uint32_t flags = 0;
  std::int64_t size = 0;
  if (has(kErrorAttribute) && !fields.read(error)) {
    return std::nullopt;
  }
  const std::size_t place = fields.position();
  if (!fields.read(reference) || (has(kTypeAttribute) && !fields.read(type)) ||
      (has(kModifiedAttribute) && !fields.read(modified)) || (has(kFlagsAttribute) && !fields.read(flags)) ||
      (hasSize && !fields.read(size))) {
    return std::nullopt;
  }
  const auto name = nameAt(bytes, place, reference);
  if (!name) {
    return std::nullopt;
  }
  PackedEntry entry;
  entry.name = *name;
  if (error == 0 && has(kTypeAttribute)) {
    entry.kind = kindOf(type);
  }
  entry.isHidden = (flags & kHiddenFlag) != 0;
  if (has(kModifiedAttribute)) {
    entry.modified = timeOf(timespec{modified.seconds, modified.nanoseconds});
  }
  if (hasSize && size >= 0) {
    entry.size = size;
  }
  return entry;
}

}  // namespace

std::optional<PackedEntry> takeEntry(std::span<const char>& bytes) {
  std::uint32_t length = 0;
  if (!Fields(bytes).read(length) || length > bytes.size()) {
    return std::nullopt;
  }
  const auto entry = readEntry(bytes.first(length));
  if (entry) {
    bytes = bytes.subspan(length);
  }
  return entry;
}

}  // namespace cirrovane
