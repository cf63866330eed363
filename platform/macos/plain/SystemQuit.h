#pragma once

#include <cstdint>
#include <optional>

namespace cirrovane {

/// A code of four characters, as the system writes its events' names.
constexpr std::uint32_t fourCharacterCode(const char (&text)[5]) {
  std::uint32_t code = 0;
  for (int index = 0; index < 4; ++index) {
    code = code << 8U | static_cast<unsigned char>(text[index]);
  }
  return code;
}

/// Whether the system ends the program since the user logs out, restarts or shuts down. The reason is the one that the
/// event which asks the program to quit gives; absent where no event asks, or it gives none, as with the user's own
/// Quit.
bool isSystemQuit(std::optional<std::uint32_t> reason);

}  // namespace cirrovane
