#pragma once

#include "base/Result.h"
#include "ui/viewmodels/Text.h"

#include <QString>
#include <optional>

namespace cirrovane {

/// Says that a change is not on the disk, and why; empty without a failure.
inline QString saveFailureText(std::string_view what, const std::optional<Failure>& failure) {
  return failure ? QStringLiteral("The %1 could not be saved: %2").arg(toQString(what), toDisplay(failure->message))
                 : QString();
}

}  // namespace cirrovane
