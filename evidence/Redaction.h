#pragma once

#include "base/JSONRecord.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace cirrovane {

/// What a packet shows of names to whoever gets it.
enum class Redaction : std::uint8_t {
  /// Names as they are.
  none,
  /// Pseudonyms for the names of folders and files, with their extensions.
  names,
  /// Pseudonyms without extensions, and no words of the system or of its tools.
  strict,
};

inline constexpr std::array<RawValue<Redaction>, 3> kRedactions = {{
    {Redaction::none, "none"},
    {Redaction::names, "names"},
    {Redaction::strict, "strict"},
}};

constexpr std::string_view rawValue(Redaction redaction) {
  return kRedactions.at(static_cast<std::size_t>(redaction)).text;
}
constexpr bool fromRawValue(std::string_view text, Redaction& target) {
  return caseOfRawValue(kRedactions, text, target);
}

/// What stands in place of a text of which nobody can tell where a name in it begins and ends.
inline constexpr std::string_view kWithheld = "(withheld)";

}  // namespace cirrovane
