#include "ui/viewmodels/SnapshotText.h"

#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/Text.h"

namespace cirrovane {

QString verdictTimeText(const ScanSnapshot& snapshot, const TimeText& timeText, Time now) {
  return (snapshot.safeToClose ? QStringLiteral("Safe at ") : QStringLiteral("Unsafe at ")) +
         toQString(timeText.moment(snapshot.timestamp, now));
}

QString topReasonTitle(const ScanSnapshot& snapshot) {
  return snapshot.topBlockerReason ? toQString(displayTitle(*snapshot.topBlockerReason)) : QString();
}

QString topBlockerLine(const ScanSnapshot& snapshot) {
  if (snapshot.topBlockerReason && snapshot.topBlockerFilePath) {
    return blockerLine(*snapshot.topBlockerReason, *snapshot.topBlockerFilePath);
  }
  return topReasonTitle(snapshot);
}

}  // namespace cirrovane
