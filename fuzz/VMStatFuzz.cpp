// What vm_stat printed about the memory: another program's words, in a form that is nobody's promise.

#include "diagnostics/StatusParsers.h"
#include "fuzz/NaiveText.h"
#include "fuzz/Require.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {
namespace {

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

/// A number that is all of a text.
std::optional<std::uint64_t> naiveInteger(const std::string& text) {
  if (text.empty() || naiveDigits(text) != text) {
    return std::nullopt;
  }
  std::uint64_t value = 0;
  for (const char digit : text) {
    const auto next = static_cast<std::uint64_t>(digit - '0');
    if (value > (kMost - next) / 10) {
      return std::nullopt;
    }
    value = value * 10 + next;
  }
  return value;
}

std::optional<std::uint64_t> naivePageSize(const std::string& header) {
  for (std::size_t start = 0; start < header.size(); ++start) {
    const std::string digits = naiveDigits(std::string_view(header).substr(start));
    if (!digits.empty()) {
      return naiveInteger(digits);
    }
  }
  return std::nullopt;
}

std::uint64_t naiveCount(const std::vector<std::string>& lines, std::string_view label) {
  for (const std::string& line : lines) {
    if (line.find(label) != std::string::npos) {
      const auto pieces = piecesBetween(replaced(line, '.', ""), kBlanks);
      return pieces.empty() ? 0 : naiveInteger(pieces.back()).value_or(0);
    }
  }
  return 0;
}

std::optional<std::uint64_t> naiveMemory(std::string_view text) {
  const std::vector<std::string> lines = naiveLines(text);
  const std::optional<std::uint64_t> pageSize = lines.empty() ? std::nullopt : naivePageSize(lines.front());
  if (!pageSize) {
    return std::nullopt;
  }
  std::uint64_t used = 0;
  for (const std::string_view label : {"Pages active", "Pages wired down", "Pages occupied by compressor"}) {
    const std::uint64_t count = naiveCount(lines, label);
    if (*pageSize != 0 && count > (kMost - used) / *pageSize) {
      return std::nullopt;
    }
    used += count * *pageSize;
  }
  return used;
}

void check(std::string_view bytes) {
  const std::optional<std::uint64_t> used = memoryUsedFromVMStat(bytes);
  require(used == naiveMemory(bytes), "every other way to read it finds the same");

  const std::string text(bytes);
  require(memoryUsedFromVMStat("\r\n\n" + text) == used, "empty lines mean nothing");
  require(memoryUsedFromVMStat(replaced(text, '\n', "\r\n\n")) == used, "every line break is as good as another");
  require(memoryUsedFromVMStat(text + "\n" + text) == used, "the first line with a label counts, and no other");
  require(naiveLines(text).empty() || memoryUsedFromVMStat(text + "\nPages inactive: 1.\nPages free: 1.\n") == used,
          "other pages mean nothing");
  require(memoryUsedFromVMStat("page size of 0 bytes\n" + text) == 0U, "pages of no size hold nothing");
  require(!memoryUsedFromVMStat("no page size\n" + text), "only the first line tells the size of a page");

  const std::optional<std::uint64_t> inBytes = memoryUsedFromVMStat("page size of 1 byte\n" + text);
  const std::optional<std::uint64_t> inPairs = memoryUsedFromVMStat("page size of 2 bytes\n" + text);
  require(inPairs == (inBytes && *inBytes <= kMost / 2 ? std::optional(*inBytes * 2) : std::nullopt),
          "pages of twice the size hold twice as much");
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
