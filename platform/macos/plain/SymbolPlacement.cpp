#include "platform/macos/plain/SymbolPlacement.h"

#include <algorithm>

namespace cirrovane {

SymbolPlacement fitted(double drawingWidth, double drawingHeight, double boxWidth, double boxHeight) {
  const bool hasArea = drawingWidth > 0 && drawingHeight > 0 && boxWidth > 0 && boxHeight > 0;
  if (!hasArea) {
    return {};
  }
  const double scale = std::min(boxWidth / drawingWidth, boxHeight / drawingHeight);
  const double width = drawingWidth * scale;
  const double height = drawingHeight * scale;
  return {(boxWidth - width) / 2, (boxHeight - height) / 2, width, height};
}

}  // namespace cirrovane
