#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// A symbol's shape: how much of each pixel it covers, row by row from the top, 255 for all of it.
struct SymbolBitmap {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> coverage;
};

/// The system's own drawings of symbols. Callable on any thread.
class SymbolSource {
 public:
  virtual ~SymbolSource() = default;
  /// The symbol as large as it fits into so many pixels, in the middle; absent when the system has none of that name.
  virtual std::optional<SymbolBitmap> draw(const std::string& name, int width, int height) const = 0;
};

}  // namespace cirrovane
