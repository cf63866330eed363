// What top printed about the processor: another program's words, in a form that is nobody's promise.

#include "diagnostics/StatusParsers.h"
#include "fuzz/NaiveText.h"
#include "fuzz/Require.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {
namespace {

constexpr std::string_view kLabel = "CPU usage";

/// The reading that starts where a text does; the outer optional is absent when none does.
std::optional<std::optional<double>> usageAtStart(std::string_view text) {
  const std::string user = naiveNumber(text, ".");
  text.remove_prefix(user.size());
  if (user.empty() || !text.starts_with("% user,")) {
    return std::nullopt;
  }
  text.remove_prefix(7);
  while (const std::size_t blank = lengthOfAny(text, kBlanks)) {
    text.remove_prefix(blank);
  }
  const std::string system = naiveNumber(text, ".");
  if (system.empty() || !text.substr(system.size()).starts_with("% sys")) {
    return std::nullopt;
  }
  const std::optional<double> userPercent = naiveValue(user);
  const std::optional<double> systemPercent = naiveValue(system);
  if (!userPercent || !systemPercent || !std::isfinite(*userPercent + *systemPercent)) {
    return std::optional<double>();
  }
  return std::optional(*userPercent + *systemPercent);
}

/// Tries every place of the first line with the label, from the left.
std::optional<double> naiveUsage(std::string_view text) {
  for (const std::string& line : naiveLines(text)) {
    if (line.find(kLabel) == std::string::npos) {
      continue;
    }
    for (std::size_t start = 0; start < line.size(); ++start) {
      if (const auto usage = usageAtStart(std::string_view(line).substr(start))) {
        return *usage;
      }
    }
    return std::nullopt;
  }
  return std::nullopt;
}

void check(std::string_view bytes) {
  const std::optional<double> usage = cpuUsageFromTop(bytes);
  require(!usage || (std::isfinite(*usage) && *usage >= 0), "a usage is a number, and none is negative");
  require(areAlike(usage, naiveUsage(bytes)), "every other way to read it finds the same");

  const std::string text(bytes);
  require(cpuUsageFromTop("Load Avg: 1% user, 1% sys\n" + text) == usage, "a line without the label means nothing");
  require(cpuUsageFromTop(replaced(text, '\n', "\r\n\n")) == usage, "every line break is as good as another");
  const bool hasLabel = firstLineContaining(bytes, kLabel).has_value();
  require(hasLabel || !usage, "there is no usage without the label");
  const std::optional<double> appended = cpuUsageFromTop(text + "\nCPU usage: 1% user, 2% sys");
  require(appended == (hasLabel ? usage : 3), "the first line with the label counts, and no other");
  require(!cpuUsageFromTop("CPU usage: n/a\n" + text), "a first line that says nothing is not passed over");
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
