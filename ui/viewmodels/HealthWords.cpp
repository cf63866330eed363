#include "ui/viewmodels/HealthWords.h"

#include "ui/viewmodels/Text.h"

namespace cirrovane {

HealthWords healthWords(std::optional<HealthState> state) {
  if (!state) {
    return {"Scanning", "ellipsis.circle"};
  }
  switch (*state) {
    case HealthState::safe:
      return {"Green Safe", "checkmark.seal.fill"};
    case HealthState::warning:
      return {"Yellow Needs Attention", "exclamationmark.triangle.fill"};
    case HealthState::danger:
      break;
  }
  return {"Red Unsafe", "xmark.octagon.fill"};
}

Tone verdictTone(const ShownVerdict& verdict) {
  if (!verdict.isKnown() || verdict.isStale()) {
    return Tone::Neutral;
  }
  return verdict.safeToClose ? Tone::Good : Tone::Critical;
}

QString asOfText(const ShownVerdict& verdict, const TimeText& timeText) {
  return verdict.isStale() && verdict.confirmedAt
             ? QStringLiteral("as of ") + toQString(timeText.timeOfDay(*verdict.confirmedAt))
             : QString();
}

QString staleReason(const ShownVerdict& verdict) {
  if (!verdict.isStale()) {
    return {};
  }
  return verdict.standing == VerdictStanding::slept ? QStringLiteral("This Mac slept after the last scan.")
                                                    : QStringLiteral("The last scan is over 3 minutes old.");
}

QString livenessText(const ShownVerdict& verdict, const Liveness& liveness) {
  if (!verdict.isKnown()) {
    return {};
  }
  const QString state = toQString(livenessLabel(liveness.state));
  return liveness.reason.empty() ? state : state + QStringLiteral(". ") + toDisplay(liveness.reason);
}

QString staleNote(const ShownVerdict& verdict, const TimeText& timeText) {
  return verdict.isStale() ? asOfText(verdict, timeText) + QStringLiteral(". ") + staleReason(verdict) : QString();
}

}  // namespace cirrovane
