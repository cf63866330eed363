#pragma once

#include "base/DisplayText.h"

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

/// What a tool printed, made harmless for the screen, without the white space at its end.
inline QString toDisplayOutput(std::string_view text) {
  return toQString(displayOutput(text));
}

}  // namespace cirrovane
