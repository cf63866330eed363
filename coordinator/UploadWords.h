#pragma once

#include "core/PendingUploads.h"
#include "core/UploadProgress.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

// What is left to upload, in words for people, which terminal and window share. Pure functions.

namespace cirrovane {

/// In powers of 1000: "0 bytes", "950 KB", "1.2 GB".
std::string bytesText(std::int64_t bytes);

/// "12 files, 1.2 GB".
std::string amountText(const PendingUploads& uploads);

/// In how much time everything has left: "about 6 to 9 min", "under a minute". Absent without an estimate.
std::optional<std::string> rangeText(const PendingUploads& uploads);

/// Why there is no estimate: "nothing has moved for 12 min", "no estimate yet".
std::string withoutRangeText(const std::optional<std::chrono::microseconds>& quiet);

/// How long something took or has waited, in its one or two largest units: "45 s", "12 min", "3 h 5 min", "2 days".
std::string waitText(std::chrono::microseconds time);

}  // namespace cirrovane
