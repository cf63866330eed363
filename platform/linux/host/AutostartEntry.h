#pragma once

#include "base/Result.h"

#include <functional>
#include <string>
#include <string_view>

namespace cirrovane {

// An entry of the autostart folder, as freedesktop.org's desktops read it.

/// The text of an entry that starts a program with the session. With `isHidden`, desktops take it for none. Fails for a
/// path that no entry can name.
Result<std::string> autostartEntry(const std::string& program, bool isHidden);

/// Whether a desktop starts the program of this entry. `isExecutable` is asked for the program that the entry is good
/// for.
bool startsAtLogin(std::string_view entry, const std::function<bool(const std::string& path)>& isExecutable);

}  // namespace cirrovane
