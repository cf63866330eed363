#include "coordinator/UploadWords.h"

#include "base/ASCII.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view kAccountTitle = "iCloud account session unavailable";
constexpr std::string_view kStorageTitle = "iCloud storage path unavailable";
/// The programs that send files.
constexpr std::array<std::string_view, 3> kSenderTitles = {"bird daemon", "cloudd daemon", "fileproviderd"};

bool isTrouble(const DiagnosticFinding& finding) {
  return finding.severity == DiagnosticSeverity::warning || finding.severity == DiagnosticSeverity::error;
}

bool isAboutNetwork(const DiagnosticFinding& finding) {
  return finding.domain == DiagnosticDomain::network;
}
bool isAboutAccount(const DiagnosticFinding& finding) {
  return finding.domain == DiagnosticDomain::iCloud &&
         (finding.title == kAccountTitle || finding.title == kStorageTitle);
}
bool isAboutSenders(const DiagnosticFinding& finding) {
  return finding.domain == DiagnosticDomain::iCloud &&
         std::ranges::find(kSenderTitles, finding.title) != kSenderTitles.end();
}

/// Whether the system says that there is no room left in the cloud.
bool isAboutRoom(std::string_view error) {
  const std::string words = lowerCase(error);
  constexpr std::array<std::string_view, 4> kSigns = {"enough space", "enough storage", "storage is full", "quota"};
  return std::ranges::any_of(kSigns, [&](std::string_view sign) { return words.find(sign) != std::string::npos; });
}

/// A range's two ends in one unit, which the later one chooses.
std::string rangeOf(std::chrono::microseconds earliest, std::chrono::microseconds latest) {
  const auto between = [&](std::chrono::microseconds unit, std::string_view name) {
    const auto low = std::max<std::int64_t>(earliest / unit, 1);
    const auto high = static_cast<std::int64_t>(std::ceil(std::chrono::duration<double>(latest) / unit));
    return low >= high ? fmt::format("about {} {}", high, name) : fmt::format("about {} to {} {}", low, high, name);
  };
  if (latest <= 1min) {
    return "under a minute";
  }
  if (latest <= 90min) {
    return between(1min, "min");
  }
  return latest <= 48h ? between(1h, "h") : between(24h, "days");
}

}  // namespace

std::string bytesText(std::int64_t bytes) {
  struct Unit {
    double size;
    std::string_view name;
  };
  constexpr std::array<Unit, 4> kUnits = {{{1e12, "TB"}, {1e9, "GB"}, {1e6, "MB"}, {1e3, "KB"}}};
  const auto size = static_cast<double>(bytes);
  for (const Unit& unit : kUnits) {
    // What would be rounded to a thousand of a unit is one of the next.
    if (size >= unit.size * 0.9995) {
      const double count = size / unit.size;
      return unit.size >= 1e6 && count < 99.95 ? fmt::format("{:.1f} {}", count, unit.name)
                                               : fmt::format("{:.0f} {}", count, unit.name);
    }
  }
  return fmt::format("{} byte{}", bytes, bytes == 1 ? "" : "s");
}

std::string amountText(const PendingUploads& uploads) {
  return fmt::format("{} file{}, {}", uploads.pendingFiles, uploads.pendingFiles == 1 ? "" : "s",
                     bytesText(uploads.pendingBytes));
}

std::string leftToUploadText(const PendingUploads& uploads) {
  return "Left to upload: " + amountText(uploads);
}

std::optional<std::string> rangeText(const PendingUploads& uploads) {
  if (!uploads.estimate) {
    return std::nullopt;
  }
  return rangeOf(uploads.estimate->earliest - uploads.generatedAt, uploads.estimate->latest - uploads.generatedAt);
}

std::string withoutRangeText(const std::optional<std::chrono::microseconds>& quiet) {
  return quiet && *quiet >= kShortestQuiet ? "nothing has moved for " + waitText(*quiet) : "no estimate yet";
}

std::string timeLeftText(const PendingUploads& uploads, const std::optional<std::chrono::microseconds>& quiet) {
  return rangeText(uploads).value_or(withoutRangeText(quiet));
}

std::string stuckText(std::int64_t count) {
  return fmt::format("{} file{} stuck", count, count == 1 ? " is" : "s are");
}

std::string uploadsSentence(const UploadStanding& standing, Time now) {
  const PendingUploads totals = totalsAt(standing, now);
  if (totals.pendingFiles == 0) {
    return "";
  }
  const std::string stuck = totals.stuckFiles > 0 ? " " + stuckText(totals.stuckFiles) + "." : "";
  return fmt::format("{}, {}.{}", leftToUploadText(totals), timeLeftText(totals, quietAt(standing, now)), stuck);
}

std::vector<DiagnosticFinding> findingsAgainstUploads(const std::vector<DiagnosticFinding>& findings) {
  std::vector<DiagnosticFinding> against;
  std::ranges::copy_if(findings, std::back_inserter(against), [](const DiagnosticFinding& finding) {
    return isTrouble(finding) && (isAboutNetwork(finding) || isAboutAccount(finding) || isAboutSenders(finding));
  });
  return against;
}

std::string nextStepText(std::string_view error, const std::vector<DiagnosticFinding>& findings) {
  const std::vector<DiagnosticFinding> against = findingsAgainstUploads(findings);
  if (isAboutRoom(error)) {
    return "Free some iCloud storage, or get more of it. The upload then goes on by itself.";
  }
  if (std::ranges::any_of(against, isAboutNetwork)) {
    return "Connect this Mac to the internet. The upload then goes on by itself.";
  }
  if (std::ranges::any_of(against, isAboutAccount)) {
    return "See in System Settings that you are signed in to iCloud and iCloud Drive is on. The upload then goes on by "
           "itself.";
  }
  if (std::ranges::any_of(against, isAboutSenders)) {
    return "Copy the file to a folder outside iCloud Drive, then restart this Mac.";
  }
  if (!error.empty()) {
    return "Copy the file to a folder outside iCloud Drive. Then save it again, so that its upload starts anew.";
  }
  return "Leave this Mac on and awake. If the file still waits in an hour, copy it to a folder outside iCloud Drive, "
         "then "
         "restart this Mac.";
}

std::string waitText(std::chrono::microseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(std::max(time, std::chrono::microseconds(0)));
  if (seconds < 1min) {
    return fmt::format("{} s", seconds.count());
  }
  if (seconds < 1h) {
    return fmt::format("{} min", seconds / 1min);
  }
  if (seconds < 48h) {
    const auto minutes = seconds % 1h / 1min;
    return minutes == 0 ? fmt::format("{} h", seconds / 1h) : fmt::format("{} h {} min", seconds / 1h, minutes);
  }
  return fmt::format("{} days", seconds / 24h);
}

}  // namespace cirrovane
