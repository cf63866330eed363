#pragma once

#include "platform/TimeText.h"
#include "stores/ScanSnapshot.h"

#include <QString>

namespace cirrovane {

/// "Safe at 6:21:07 PM" or "Unsafe at 6:21:07 PM"; with the day unless that is today.
QString verdictTimeText(const ScanSnapshot& snapshot, const TimeText& timeText, Time now);
/// The title of the first blocker's reason; empty when it is unknown, or when there was none.
QString topReasonTitle(const ScanSnapshot& snapshot);
/// The same with the blocker's file, where it is known.
QString topBlockerLine(const ScanSnapshot& snapshot);

}  // namespace cirrovane
