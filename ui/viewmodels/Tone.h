#pragma once

#include "core/HealthState.h"
#include "diagnostics/DiagnosticFinding.h"

#include <QColor>
#include <QObject>
#include <QtQmlIntegration>
#include <optional>

namespace cirrovane {

/// The tones for QML, and the one table of their colours. It has no state.
class Tones : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(Tone)
  QML_SINGLETON

 public:
  /// What a sign or a word says by its colour. QML knows only enumerators that begin with a capital.
  enum class Tone {
    /// Says nothing.
    Plain,
    /// Neither good nor bad, or not known yet.
    Neutral,
    Info,
    Good,
    /// The health state between safe and danger.
    Caution,
    Warning,
    Critical,
  };
  Q_ENUM(Tone)

  explicit Tones(QObject* parent = nullptr) : QObject(parent) {}

  /// The colour of a tone, for the window and the tray icon. A number that is no tone counts as critical. Any thread.
  Q_INVOKABLE static QColor color(cirrovane::Tones::Tone tone);
};

using Tone = Tones::Tone;

/// The tone of a health state; neutral without one.
Tone toneOf(std::optional<HealthState> state);
Tone toneOf(DiagnosticSeverity severity);

}  // namespace cirrovane
