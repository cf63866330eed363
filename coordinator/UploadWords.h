#pragma once

#include "coordinator/UploadStanding.h"
#include "core/PendingUploads.h"
#include "diagnostics/DiagnosticFinding.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What is left to upload, in words for people, which terminal and window share. Pure functions.

namespace cirrovane {

/// In powers of 1000: "0 bytes", "950 KB", "1.2 GB".
std::string bytesText(std::int64_t bytes);

/// "12 files, 1.2 GB".
std::string amountText(const PendingUploads& uploads);

/// "Left to upload: 12 files, 1.2 GB".
std::string leftToUploadText(const PendingUploads& uploads);

/// In how much time everything has left: "about 6 to 9 min", "under a minute". Absent without an estimate.
std::optional<std::string> rangeText(const PendingUploads& uploads);

/// Why there is no estimate: "nothing has moved for 12 min", "no estimate yet".
std::string withoutRangeText(const std::optional<std::chrono::microseconds>& quiet);

/// The range, or why there is none.
std::string timeLeftText(const PendingUploads& uploads, const std::optional<std::chrono::microseconds>& quiet);

/// "2 files are stuck".
std::string stuckText(std::int64_t count);

/// All of it in sentences, as of `now`: "Left to upload: 12 files, 1.2 GB, about 6 to 9 min. 2 files are stuck." Empty
/// while nothing is left.
std::string uploadsSentence(const UploadStanding& standing, Time now);

/// What of a machine's findings keeps files from leaving: of its network, of the account, of iCloud's own programs.
std::vector<DiagnosticFinding> findingsAgainstUploads(const std::vector<DiagnosticFinding>& findings);

/// What the user can do about a stuck file without putting it at risk. `error` is the system's, empty without one.
std::string nextStepText(std::string_view error, const std::vector<DiagnosticFinding>& findings);

/// How long something took or has waited, in its one or two largest units: "45 s", "12 min", "3 h 5 min", "2 days".
std::string waitText(std::chrono::microseconds time);

}  // namespace cirrovane
