#pragma once

#include <string>
#include <string_view>

namespace cirrovane {

/// A name or path as a person may safely see it: line breaks, control bytes, invalid UTF-8 and bidirectional controls
/// are written out ("\n", "\x1b", "\u{202e}"), so that no name can move the cursor or pretend to be another.
std::string displayText(std::string_view text);

/// Writes a byte out: "\x1b".
void appendEscaped(char byte, std::string& out);

/// What a tool printed, as displayText, without the white space at its end.
std::string displayOutput(std::string_view text);

}  // namespace cirrovane
