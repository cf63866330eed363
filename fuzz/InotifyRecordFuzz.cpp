// What inotify wrote: the system's own words, but names of any bytes, in records of any length.

#include "fuzz/Require.h"
#include "platform/linux/watch/InotifyRecord.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/inotify.h>

namespace cirrovane {
namespace {

/// A number of the machine's own form, read byte by byte.
template <class Number>
Number naiveNumber(std::string_view bytes, std::size_t offset) {
  Number number{};
  for (std::size_t index = 0; index < sizeof number; ++index) {
    std::memcpy(reinterpret_cast<char*>(&number) + index, &bytes[offset + index], 1);
  }
  return number;
}

void check(std::string_view bytes) {
  std::string_view rest = bytes;
  std::size_t position = 0;
  while (const auto record = takeInotifyRecord(rest)) {
    require(bytes.size() - position >= sizeof(inotify_event), "a record is whole");
    const auto length = naiveNumber<std::uint32_t>(bytes, position + offsetof(inotify_event, len));
    require(length <= bytes.size() - position - sizeof(inotify_event), "a name ends before the bytes do");
    require(record->watch == naiveNumber<int>(bytes, position + offsetof(inotify_event, wd)), "the watch is read");
    require(record->mask == naiveNumber<std::uint32_t>(bytes, position + offsetof(inotify_event, mask)),
            "the mask is read");
    std::string name;
    for (std::size_t index = 0; index < length && bytes[position + sizeof(inotify_event) + index] != '\0'; ++index) {
      name += bytes[position + sizeof(inotify_event) + index];
    }
    require(record->name == name, "the name ends at its first NUL, or with its field");
    position += sizeof(inotify_event) + length;
    require(rest == bytes.substr(position), "the next record begins where this one ends");
  }
  require(rest == bytes.substr(position), "what is no whole record stays");
  std::string_view again = rest;
  require(!takeInotifyRecord(again), "what is no whole record stays so");
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
