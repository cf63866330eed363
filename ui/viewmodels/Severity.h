#pragma once

#include "diagnostics/DiagnosticFinding.h"

#include <QString>

namespace cirrovane {

/// The word for a severity on its badge.
QString severityTitle(DiagnosticSeverity severity);

/// The name of a severity's symbol.
QString severitySymbol(DiagnosticSeverity severity);

}  // namespace cirrovane
