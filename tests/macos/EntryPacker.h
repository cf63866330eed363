#pragma once

#include "platform/macos/plain/PackedEntry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane::test {

/// An entry of a folder as a test wants the kernel to tell of it. What is absent is not told.
struct EntryToPack {
  std::string_view name;
  std::optional<std::uint32_t> type = kRegularFileType;
  std::optional<std::uint32_t> error = std::nullopt;
  std::optional<std::uint32_t> flags = std::nullopt;
  std::optional<std::int64_t> modifiedSeconds = std::nullopt;
  std::int64_t modifiedNanoseconds = 0;
  std::optional<std::int64_t> size = std::nullopt;
};

/// Adds the entry to the bytes as the kernel packs it: values at multiples of four bytes, the whole at one of eight.
void pack(const EntryToPack& entry, std::string& bytes);

/// The entry alone.
std::string packed(const EntryToPack& entry);

}  // namespace cirrovane::test
