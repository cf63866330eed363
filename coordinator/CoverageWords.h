#pragma once

#include "core/CoverageReport.h"

#include <cstdint>
#include <string>
#include <string_view>

// The coverage in words for people, which terminal and window share. Pure functions. What they take from the disk is
// not made harmless yet.

namespace cirrovane {

/// The title of watched folders that a look could not look at.
inline constexpr std::string_view kNotLookedAtTitle = "Not Looked At";

/// What a look looked at: "3 hidden items, 1 package and 12 items in them".
std::string examinedText(const CoverageExamined& examined);

/// Why a gap of the kind matters and what to do about it, as two sentences.
std::string adviceOn(GapKind kind);

/// How many gaps and folders keep the coverage from being complete.
std::int64_t unvouchedCount(const CoverageReport& report);

/// "The verdict does not vouch for 3 items."; empty where the coverage is complete.
std::string unvouchedSentence(const CoverageReport& report);

/// The gaps by their kinds: "1 Sync Paused, 2 Not Looked At"; empty where there are none.
std::string gapSummary(const CoverageReport& report);

/// "2 gaps are acknowledged"; empty for none.
std::string acknowledgedText(std::int64_t count);

/// How many gaps of a kind are counted only: "and 3 more"; empty for none.
std::string notListedText(const CoverageReport& report, GapKind kind);

/// Why something could not be acknowledged, as a sentence.
std::string notAcknowledgedText(std::string_view reason);

/// Why this path cannot be acknowledged, as a sentence.
std::string notUTF8Text(std::string_view path);

}  // namespace cirrovane
