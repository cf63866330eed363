#pragma once

#include "platform/SymbolSource.h"

#include <optional>
#include <string>

namespace cirrovane {

/// SF Symbols.
class MacSymbolSource final : public SymbolSource {
 public:
  std::optional<SymbolBitmap> draw(const std::string& name, int width, int height) const override;
};

}  // namespace cirrovane
