#pragma once

#include "core/DisplayText.h"

#include <QString>
#include <string_view>

namespace cirrovane {

/// One of our own texts for the screen.
inline QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// A name or path from the disk, made harmless for the screen.
inline QString toDisplay(std::string_view text) {
  return toQString(displayText(text));
}

}  // namespace cirrovane
