#include "ui/viewmodels/HealthWords.h"

#include "ui/viewmodels/Text.h"

namespace cirrovane {

HealthWords healthWords(std::optional<HealthState> state) {
  if (!state) {
    return {"Scanning", "ellipsis.circle", "Scanning"};
  }
  switch (*state) {
    case HealthState::safe:
      return {"Green Safe", "checkmark.seal.fill", "Safe"};
    case HealthState::warning:
      return {"Yellow Needs Attention", "exclamationmark.triangle.fill", "Needs Attention"};
    case HealthState::danger:
      break;
  }
  return {"Red Unsafe", "xmark.octagon.fill", "Unsafe"};
}

Tone verdictTone(const ShownVerdict& verdict) {
  if (!verdict.isKnown() || verdict.isStale()) {
    return Tone::Neutral;
  }
  return verdict.safeToClose ? Tone::Good : Tone::Critical;
}

QString asOfText(const ShownVerdict& verdict, const TimeText& timeText, Time now) {
  return verdict.isStale() && verdict.confirmedAt
             ? QStringLiteral("as of ") + toQString(timeText.moment(*verdict.confirmedAt, now))
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

QString staleNote(const ShownVerdict& verdict, const TimeText& timeText, Time now) {
  return verdict.isStale() ? asOfText(verdict, timeText, now) + QStringLiteral(". ") + staleReason(verdict) : QString();
}

}  // namespace cirrovane
