#pragma once

namespace cirrovane {

/// A rectangle, in any unit.
struct SymbolPlacement {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const SymbolPlacement&, const SymbolPlacement&) = default;
};

/// As large as a drawing of these proportions fits into the box, in its middle; empty when either has no area.
SymbolPlacement fitted(double drawingWidth, double drawingHeight, double boxWidth, double boxHeight);

}  // namespace cirrovane
