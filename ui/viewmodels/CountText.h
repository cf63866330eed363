#pragma once

#include "ui/viewmodels/Text.h"

#include <QString>
#include <cstdint>
#include <string_view>

namespace cirrovane {

/// "1 file", "12 files", for a noun that takes an s.
inline QString countText(std::int64_t count, std::string_view noun) {
  return QString::number(count) + QLatin1Char(' ') + toQString(noun) + (count == 1 ? QString() : QStringLiteral("s"));
}

}  // namespace cirrovane
