#include "ui/viewmodels/Severity.h"

#include "ui/viewmodels/Text.h"

#include <array>
#include <cstddef>

namespace cirrovane {
namespace {

struct SeverityLook {
  const char* title;
  const char* symbol;
};

/// In declaration order of the severities.
constexpr std::array<SeverityLook, kDiagnosticSeverities.size()> kLooks = {{
    {"Info", "info.circle.fill"},
    {"OK", "checkmark.seal.fill"},
    {"Warning", "exclamationmark.triangle.fill"},
    {"Error", "xmark.octagon.fill"},
}};

const SeverityLook& lookOf(DiagnosticSeverity severity) {
  return kLooks.at(static_cast<std::size_t>(severity));
}

}  // namespace

QString severityTitle(DiagnosticSeverity severity) {
  return toQString(lookOf(severity).title);
}

QString severitySymbol(DiagnosticSeverity severity) {
  return toQString(lookOf(severity).symbol);
}

}  // namespace cirrovane
