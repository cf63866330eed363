#include "ui/viewmodels/SnapshotText.h"

#include "ui/viewmodels/Text.h"

namespace cirrovane {

QString verdictTimeText(const ScanSnapshot& snapshot, const TimeText& timeText, Time now) {
  return (snapshot.safeToClose ? QStringLiteral("Safe at ") : QStringLiteral("Unsafe at ")) +
         toQString(timeText.moment(snapshot.timestamp, now));
}

QString topReasonTitle(const ScanSnapshot& snapshot) {
  return snapshot.topBlockerReason ? toQString(displayTitle(*snapshot.topBlockerReason)) : QString();
}

}  // namespace cirrovane
