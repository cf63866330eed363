#pragma once

#include <string>
#include <string_view>

namespace cirrovane::demo {

/// A name for a message: its control characters escaped, so that it cannot play tricks on the terminal.
std::string printable(std::string_view text);

/// One word of a command that a person can paste into a shell.
std::string shellWord(std::string_view text);

/// What the system says about an error number.
std::string systemMessage(int error);

}  // namespace cirrovane::demo
