#include "cli/TextStyle.h"

#include <fmt/format.h>

namespace cirrovane {

std::string TextStyle::inStateColour(HealthState state, std::string_view text) const {
  switch (state) {
    case HealthState::safe:
      return wrap("32", text);
    case HealthState::warning:
      return wrap("33", text);
    case HealthState::danger:
      break;
  }
  return wrap("31", text);
}

std::string TextStyle::inSeverityColour(DiagnosticSeverity severity, std::string_view text) const {
  switch (severity) {
    case DiagnosticSeverity::ok:
      return inStateColour(HealthState::safe, text);
    case DiagnosticSeverity::warning:
      return inStateColour(HealthState::warning, text);
    case DiagnosticSeverity::error:
      return inStateColour(HealthState::danger, text);
    case DiagnosticSeverity::info:
      break;
  }
  return wrap("36", text);
}

std::string TextStyle::inVerdictColour(bool safeToClose, HealthState state, std::string_view text) const {
  if (safeToClose) {
    return inStateColour(HealthState::safe, text);
  }
  return inStateColour(state == HealthState::safe ? HealthState::warning : state, text);
}

std::string TextStyle::wrap(std::string_view code, std::string_view text) const {
  return isColoured_ ? fmt::format("\x1b[{}m{}\x1b[0m", code, text) : std::string(text);
}

}  // namespace cirrovane
