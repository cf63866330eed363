#pragma once

#include "platform/TimeText.h"
#include "stores/ScanSnapshot.h"

#include <QString>

namespace cirrovane {

/// "Safe at 6:21:07 PM" or "Unsafe at 6:21:07 PM".
QString verdictTimeText(const ScanSnapshot& snapshot, const TimeText& timeText);
/// The title of what stood first in the way; empty when that is unknown, or when nothing did.
QString topReasonTitle(const ScanSnapshot& snapshot);

}  // namespace cirrovane
