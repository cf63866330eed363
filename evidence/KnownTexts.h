#pragma once

#include "core/BlockerReason.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace cirrovane {

// Every sentence that a packet may hold, and where in it a name stands. A text is redacted by the sentence that it is
// an instance of, never by looking for names in it. A text that is none of these cannot be redacted but as a whole.

/// What stands between the two halves of a sentence.
enum class NamePlace : std::uint8_t {
  /// No name. "{}" in the sentence is a number.
  none,
  /// A path, from the root.
  path,
  /// A path below a watched folder.
  relativePath,
  /// One name.
  name,
};

struct KnownText {
  /// Up to the name, or all of it.
  std::string_view before;
  NamePlace place = NamePlace::none;
  /// From the name on.
  std::string_view after = {};
};

/// What may be said under a finding's title.
struct KnownFinding {
  std::string_view title;
  KnownText detail;
  /// Whether a tool of the system has put it into words.
  bool isToolsOwn = false;
};

struct KnownAction {
  std::string_view title;
  std::string_view detail;
};

std::span<const KnownFinding> knownFindings();
std::span<const KnownAction> knownActions();
std::span<const KnownText> knownSummaries();
/// What a scan itself says of a reason; nothing where the words are the system's.
std::span<const KnownText> knownDetails(BlockerReason reason);

/// Where a name stands in a text.
struct NameFound {
  NamePlace place = NamePlace::none;
  std::string_view before = {};
  std::string_view name = {};
  std::string_view after = {};
};

/// The place of the name in a text that is an instance of the sentence; absent for any other text.
std::optional<NameFound> findName(const KnownText& known, std::string_view text);

/// The place of the name in words of the system, where they are known; absent for all others.
std::optional<NameFound> findNameInSystemWords(std::string_view text);

}  // namespace cirrovane
