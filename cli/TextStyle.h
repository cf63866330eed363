#pragma once

#include "core/HealthState.h"
#include "diagnostics/DiagnosticFinding.h"

#include <string>
#include <string_view>

namespace cirrovane {

/// How text for people is set off: by colour on a terminal, not at all elsewhere. What colour says is always said in
/// words too.
class TextStyle {
 public:
  explicit TextStyle(bool isColoured) : isColoured_(isColoured) {}

  std::string bold(std::string_view text) const { return wrap("1", text); }
  std::string dim(std::string_view text) const { return wrap("2", text); }
  /// In the colour of a health state.
  std::string inStateColour(HealthState state, std::string_view text) const;
  /// In the colour of a finding's severity.
  std::string inSeverityColour(DiagnosticSeverity severity, std::string_view text) const;
  /// In the colour of a verdict: not safe never has the colour of safe, whatever the state beside it.
  std::string inVerdictColour(bool safeToClose, HealthState state, std::string_view text) const;

 private:
  std::string wrap(std::string_view code, std::string_view text) const;

  bool isColoured_;
};

}  // namespace cirrovane
