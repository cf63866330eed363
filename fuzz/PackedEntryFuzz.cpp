// What the kernel packs about a folder's entries: a disk image from elsewhere can make it hold anything.

#include "fuzz/Require.h"
#include "platform/macos/plain/PackedEntry.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace cirrovane {
namespace {

void check(std::span<const char> bytes) {
  const std::less_equal<const char*> isNotBehind;
  std::span<const char> rest = bytes;
  while (true) {
    const std::span<const char> before = rest;
    const auto entry = takeEntry(rest);
    if (!entry) {
      require(rest.data() == before.data() && rest.size() == before.size(), "what is no entry stays");
      return;
    }
    require(rest.size() < before.size(), "every entry takes some of the bytes");
    const std::span<const char> own = before.first(before.size() - rest.size());
    require(isNotBehind(own.data(), entry->name.data()) &&
                isNotBehind(entry->name.data() + entry->name.size() + 1, own.data() + own.size()),
            "a name lies inside of its entry");
    require(entry->name.data()[entry->name.size()] == '\0', "a NUL follows a name");
    require(!entry->name.empty() && entry->name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos,
            "a name leads nowhere else");
  }
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
