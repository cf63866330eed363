#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "core/GapKind.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// Something in a watched folder that a verdict does not vouch for.
struct CoverageGap {
  GapKind kind = GapKind::pendingPackage;
  /// Absolute path of the item, or of the topmost package or hidden folder that holds it.
  std::string path;
  /// The name of the first watched folder in which it was found.
  std::string folderName;
  bool isFolder = false;
  /// Which names iCloud leaves out, or how many files are gone; absent where it says nothing.
  std::optional<std::string> rule;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"kind", &CoverageGap::kind}, JSONField{"path", &CoverageGap::path},
                      JSONField{"folderName", &CoverageGap::folderName}, JSONField{"isFolder", &CoverageGap::isFolder},
                      JSONField{"rule", &CoverageGap::rule}};
  }
  friend bool operator==(const CoverageGap&, const CoverageGap&) = default;
};

/// How many items were looked at that a scan passes over.
struct CoverageExamined {
  /// Hidden items and what hidden folders hold.
  std::int64_t hidden = 0;
  /// What packages hold.
  std::int64_t inPackages = 0;
  std::int64_t packages = 0;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"hidden", &CoverageExamined::hidden},
                      JSONField{"inPackages", &CoverageExamined::inPackages},
                      JSONField{"packages", &CoverageExamined::packages}};
  }
  friend bool operator==(const CoverageExamined&, const CoverageExamined&) = default;
};

/// How many gaps there are of each kind; absent for a kind without any.
struct GapCounts {
  std::optional<std::int64_t> pendingPackage;
  std::optional<std::int64_t> pendingHidden;
  std::optional<std::int64_t> syncPaused;
  std::optional<std::int64_t> excluded;
  std::optional<std::int64_t> stateUnknown;
  std::optional<std::int64_t> notInICloud;
  std::optional<std::int64_t> unreadableFolder;
  std::optional<std::int64_t> filesLost;

  /// 0 for a kind without any.
  std::int64_t of(GapKind kind) const;
  std::int64_t all() const;
  void add(GapKind kind);
  /// Takes one away, where there is one.
  void remove(GapKind kind);

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"pendingPackage", &GapCounts::pendingPackage},
                      JSONField{"pendingHidden", &GapCounts::pendingHidden},
                      JSONField{"syncPaused", &GapCounts::syncPaused},
                      JSONField{"excluded", &GapCounts::excluded},
                      JSONField{"stateUnknown", &GapCounts::stateUnknown},
                      JSONField{"notInICloud", &GapCounts::notInICloud},
                      JSONField{"unreadableFolder", &GapCounts::unreadableFolder},
                      JSONField{"filesLost", &GapCounts::filesLost}};
  }
  friend bool operator==(const GapCounts&, const GapCounts&) = default;
};

/// What the verdict over some folders leaves out.
struct CoverageReport {
  /// Gaps beyond these are counted only.
  static constexpr std::size_t kMostGaps = 500;

  Time generatedAt;
  /// Whether there is no gap but acknowledged ones, and every folder was looked at.
  bool complete = false;
  /// Gaps that the user knows of. The rest of the report leaves them out.
  std::int64_t acknowledged = 0;
  CoverageExamined examined;
  /// Watched folders that are missing, cannot be listed or lie outside iCloud Drive, in the order of the watchlist.
  std::vector<std::string> notExamined;
  GapCounts gapCounts;
  /// By kind, then by the bytes of the path.
  std::vector<CoverageGap> gaps;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"generatedAt", &CoverageReport::generatedAt},
                      JSONField{"complete", &CoverageReport::complete},
                      JSONField{"acknowledged", &CoverageReport::acknowledged},
                      JSONField{"examined", &CoverageReport::examined},
                      JSONField{"notExamined", &CoverageReport::notExamined},
                      JSONField{"gapCounts", &CoverageReport::gapCounts},
                      JSONField{"gaps", &CoverageReport::gaps}};
  }
  friend bool operator==(const CoverageReport&, const CoverageReport&) = default;
};

/// What a report says once the user knows of one of its gaps: without it and what lies below, which are counted as
/// acknowledged. Lost files are acknowledged by themselves, and count no more.
CoverageReport withAcknowledged(CoverageReport report, const CoverageGap& gap);

/// Whether the coverage is not complete, and time alone changes nothing of that.
bool hasLastingGapsOnly(const CoverageReport& report);

}  // namespace cirrovane
