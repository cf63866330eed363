#pragma once

#include "base/Time.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace cirrovane {

// The kernel's numbers for what is asked about each entry of a folder. Their values stand in an entry in the order
// given here, each only where the entry says that it is there.

inline constexpr std::uint32_t kReturnedAttributes = 0x80000000;
inline constexpr std::uint32_t kErrorAttribute = 0x20000000;
inline constexpr std::uint32_t kNameAttribute = 0x00000001;
inline constexpr std::uint32_t kTypeAttribute = 0x00000008;
inline constexpr std::uint32_t kModifiedAttribute = 0x00000400;
inline constexpr std::uint32_t kFlagsAttribute = 0x00040000;
/// One of the group of files' attributes, whose values follow the common ones.
inline constexpr std::uint32_t kSizeAttribute = 0x00000200;

/// Types of a file system's objects by the kernel's numbers.
inline constexpr std::uint32_t kRegularFileType = 1;
inline constexpr std::uint32_t kFolderType = 2;

/// The flag of an item that the user does not see.
inline constexpr std::uint32_t kHiddenFlag = 0x00008000;

/// What an entry of a folder is, as far as a walk tells kinds apart.
enum class EntryKind { regularFile, folder, other };

/// One entry of a folder.
struct PackedEntry {
  /// Points into the bytes that were read, where a NUL follows it.
  std::string_view name;
  /// Absent when the kernel could not read the entry.
  std::optional<EntryKind> kind;
  bool isHidden = false;
  std::optional<Time> modified;
  /// Bytes; absent for what is no file.
  std::optional<std::int64_t> size;
};

/// Takes the first entry off the front of what the kernel wrote. Absent when the bytes are none that a kernel writes;
/// what follows them then has no meaning either.
std::optional<PackedEntry> takeEntry(std::span<const char>& bytes);

}  // namespace cirrovane
