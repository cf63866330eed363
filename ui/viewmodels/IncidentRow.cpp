#include "ui/viewmodels/IncidentRow.h"

#include "ui/viewmodels/Severity.h"
#include "ui/viewmodels/Text.h"

namespace cirrovane {
namespace {

QString occurrencesText(const IncidentRecord& record) {
  return (record.occurrences == 1 ? QStringLiteral("%1 occurrence") : QStringLiteral("%1 occurrences"))
      .arg(record.occurrences);
}

}  // namespace

IncidentRow incidentRow(const IncidentRecord& record, const TimeText& timeText) {
  return {.title = toDisplay(record.title),
          .detail = toDisplayOutput(record.lastDetail),
          .symbol = severitySymbol(record.severity),
          .severity = severityTitle(record.severity),
          .tone = toneOf(record.severity),
          .state = record.isResolved ? QStringLiteral("Resolved") : QStringLiteral("Active"),
          .stateTone = record.isResolved ? Tone::Good : Tone::Warning,
          .domain = toQString(rawValue(record.domain)),
          .occurrences = occurrencesText(record),
          .firstSeen = QStringLiteral("First ") + toQString(timeText.dayAndTime(record.firstSeen)),
          .lastSeen = QStringLiteral("Last ") + toQString(timeText.dayAndTime(record.lastSeen)),
          .action = record.isResolved ? QStringLiteral("Reopen") : QStringLiteral("Mark Resolved")};
}

QString keyOf(const IncidentRecord& record) {
  return toQString(record.id.text());
}

}  // namespace cirrovane
