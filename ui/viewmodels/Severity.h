#pragma once

#include "diagnostics/DiagnosticFinding.h"
#include "ui/viewmodels/Text.h"

#include <QString>

namespace cirrovane {

/// The name by which the theme knows the colour of a severity.
inline QString severityLevel(DiagnosticSeverity severity) {
  return toQString(rawValue(severity));
}

/// The word for a severity on its badge.
QString severityTitle(DiagnosticSeverity severity);

/// The name of a severity's symbol.
QString severitySymbol(DiagnosticSeverity severity);

}  // namespace cirrovane
