#include "tests/macos/EntryPacker.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace cirrovane::test {
namespace {

constexpr std::size_t kAlignment = 8;

template <class Value>
void append(std::string& bytes, const Value& value) {
  std::array<char, sizeof value> raw{};
  std::memcpy(raw.data(), &value, sizeof value);
  bytes.append(raw.data(), raw.size());
}

template <class Value>
void put(std::string& bytes, std::size_t position, Value value) {
  std::memcpy(bytes.data() + position, &value, sizeof value);
}

}  // namespace

void pack(const EntryToPack& entry, std::string& bytes) {
  const std::size_t start = bytes.size();
  std::uint32_t common = kReturnedAttributes | kNameAttribute;
  common |= entry.error ? kErrorAttribute : 0;
  common |= entry.type ? kTypeAttribute : 0;
  common |= entry.modifiedSeconds ? kModifiedAttribute : 0;
  common |= entry.flags ? kFlagsAttribute : 0;
  append(bytes, std::uint32_t{0});
  append(bytes, std::array<std::uint32_t, 5>{common, 0, 0, entry.size ? kSizeAttribute : 0, 0});
  if (entry.error) {
    append(bytes, *entry.error);
  }
  const std::size_t reference = bytes.size();
  append(bytes, std::uint64_t{0});
  if (entry.type) {
    append(bytes, *entry.type);
  }
  if (entry.modifiedSeconds) {
    append(bytes, *entry.modifiedSeconds);
    append(bytes, entry.modifiedNanoseconds);
  }
  if (entry.flags) {
    append(bytes, *entry.flags);
  }
  if (entry.size) {
    append(bytes, *entry.size);
  }
  put(bytes, reference, static_cast<std::int32_t>(bytes.size() - reference));
  put(bytes, reference + sizeof(std::int32_t), static_cast<std::uint32_t>(entry.name.size() + 1));
  bytes += entry.name;
  bytes += '\0';
  bytes.resize(start + (bytes.size() - start + kAlignment - 1) / kAlignment * kAlignment);
  put(bytes, start, static_cast<std::uint32_t>(bytes.size() - start));
}

std::string packed(const EntryToPack& entry) {
  std::string bytes;
  pack(entry, bytes);
  return bytes;
}

}  // namespace cirrovane::test
