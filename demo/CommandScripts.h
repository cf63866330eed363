#pragma once

#include <span>
#include <string_view>

namespace cirrovane::demo {

/// A command of the demo Mac, as the folder "commands" beside this file holds it.
struct CommandScript {
  /// Below the Mac's root.
  std::string_view path;
  std::string_view text;
};

std::span<const CommandScript> commandScripts();

}  // namespace cirrovane::demo
