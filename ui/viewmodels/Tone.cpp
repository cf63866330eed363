#include "ui/viewmodels/Tone.h"

namespace cirrovane {

// Signals have the system's dark-mode colours.
QColor Tones::color(Tone tone) {
  switch (tone) {
    case Tone::Plain:
      return QColor::fromRgb(0xffffff);
    case Tone::Neutral:
      return QColor::fromRgbF(1, 1, 1, 0.72F);
    case Tone::Info:
      return QColor::fromRgb(0x64d2ff);
    case Tone::Good:
      return QColor::fromRgb(0x30d158);
    case Tone::Caution:
      return QColor::fromRgb(0xffd60a);
    case Tone::Warning:
      return QColor::fromRgb(0xff9f0a);
    case Tone::Critical:
      break;
  }
  // Lighter than the system's, which is too dark for a sign on our cards.
  return QColor::fromRgb(0xff6961);
}

Tone toneOf(std::optional<HealthState> state) {
  if (!state) {
    return Tone::Neutral;
  }
  switch (*state) {
    case HealthState::safe:
      return Tone::Good;
    case HealthState::warning:
      return Tone::Caution;
    case HealthState::danger:
      break;
  }
  return Tone::Critical;
}

Tone toneOf(DiagnosticSeverity severity) {
  switch (severity) {
    case DiagnosticSeverity::info:
      return Tone::Info;
    case DiagnosticSeverity::ok:
      return Tone::Good;
    case DiagnosticSeverity::warning:
      return Tone::Warning;
    case DiagnosticSeverity::error:
      break;
  }
  return Tone::Critical;
}

}  // namespace cirrovane
