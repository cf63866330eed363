#include "core/NameRules.h"

#include "base/ASCII.h"

#include <algorithm>

namespace cirrovane {
namespace {

constexpr std::array<std::string_view, 8> kPassingNames = {
    "~$*", ".~*", "*.tmp", ".DS_Store", ".localized", "._*", "Icon\r", ".*.icloud",
};

constexpr std::string_view kAnything = "*";

bool holds(std::string_view name, std::string_view text) {
  const auto same = [](char one, char other) { return lowerCase(one) == lowerCase(other); };
  return std::ranges::search(name, text, same).begin() != name.end();
}

/// Whether a name is the text, with any other before and after it where those are free.
bool matches(std::string_view name, std::string_view pattern) {
  const bool isFreeBefore = pattern.starts_with(kAnything);
  const bool isFreeAfter = pattern.ends_with(kAnything);
  pattern.remove_prefix(isFreeBefore ? 1 : 0);
  pattern.remove_suffix(isFreeAfter ? 1 : 0);
  if (name.size() < pattern.size()) {
    return false;
  }
  if (isFreeBefore && isFreeAfter) {
    return holds(name, pattern);
  }
  if (isFreeBefore) {
    return equalIgnoringCase(name.substr(name.size() - pattern.size()), pattern);
  }
  return equalIgnoringCase(isFreeAfter ? name.substr(0, pattern.size()) : name, pattern);
}

/// The same, letters being told apart, and with a star within.
bool isExactly(std::string_view name, std::string_view pattern) {
  const std::size_t star = pattern.find('*');
  if (star == std::string_view::npos) {
    return name == pattern;
  }
  const std::string_view beginning = pattern.substr(0, star);
  const std::string_view end = pattern.substr(star + 1);
  return name.size() >= beginning.size() + end.size() && name.starts_with(beginning) && name.ends_with(end);
}

}  // namespace

std::optional<std::size_t> exclusionRuleFor(std::string_view name, ItemKind kind) {
  const auto* found = std::ranges::find_if(kExclusionRules, [&](const ExclusionRule& rule) {
    return (kind == ItemKind::folder || !rule.isForFolders) && matches(name, rule.pattern);
  });
  return found == kExclusionRules.end() ? std::nullopt
                                        : std::optional(static_cast<std::size_t>(found - kExclusionRules.begin()));
}

bool isPassingName(std::string_view name) {
  return std::ranges::any_of(kPassingNames, [&](std::string_view pattern) { return isExactly(name, pattern); });
}

}  // namespace cirrovane
