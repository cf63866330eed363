#pragma once

#include <optional>
#include <string_view>

namespace cirrovane {

/// The next line of a text and what follows it, empty lines left out. Lines end at any of Unicode's line breaks. `rest`
/// starts as the whole text; absent when no line is left.
std::optional<std::string_view> takeLine(std::string_view& rest);

/// The text after the white space that it begins with; white space is Unicode's.
std::string_view withoutLeadingSpace(std::string_view text);

/// The last piece of a text that white space separates; empty when there is nothing else in it.
std::string_view lastPiece(std::string_view text);

}  // namespace cirrovane
