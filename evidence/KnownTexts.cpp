#include "evidence/KnownTexts.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace cirrovane {
namespace {

using enum NamePlace;

constexpr auto kFindings = std::to_array<KnownFinding>({
    {"iCloud session detected", {"Ubiquity identity token is available for this user session."}},
    {"iCloud account session unavailable",
     {"This device does not currently expose an iCloud ubiquity identity token. iCloud checks may be incomplete."}},
    {"iCloud storage path accessible", {"", path}},
    {"iCloud storage path unavailable", {"The expected iCloud container path is not currently reachable."}},
    {"bird daemon", {"Running"}},
    {"bird daemon", {"Not observed. iCloud upload activity may stall."}},
    {"cloudd daemon", {"Running"}},
    {"cloudd daemon", {"Not observed. Cloud service health may be degraded."}},
    {"fileproviderd", {"Running"}},
    {"fileproviderd", {"Not observed. Some cloud file states may lag."}},
    {"Pending uploads", {"{} files are still pending upload."}},
    {"Pending uploads", {"No pending uploads detected in watchlist scan."}},
    {"Unresolved conflicts", {"{} conflict states detected."}},
    {"Upload/download errors", {"{} iCloud metadata errors were observed during scan."}},
    {"Watchlist coverage gaps", {"{} watchlist entries are outside iCloud or unavailable."}},
    {"Cloud-only files",
     {"{} files are cloud-only on this device. This affects local availability, not upload trust."}},
    {"No watchlist configured", {"Add critical folders to make trust scoring meaningful."}},

    {"Finder process", {"Finder is running."}},
    {"Finder process", {"Finder is not running; file-state indicators may be stale or unavailable."}},
    {"Missing watchlist paths", {"{} watchlist paths are missing or moved."}},
    {"Watchlist paths", {"All watchlist paths are currently reachable."}},
    {"Top blocker path", {"Top blocker path exists locally: ", path}},
    {"Top blocker path", {"Top blocker path is no longer available locally: ", path}},
    {"Finder/Files diagnostic scope",
     {"Current checks validate path reachability and blocker visibility. Internal Finder or file-provider logs are not "
      "parsed yet."}},

    {"Default route", {"Default route present."}},
    {"Default route", {"Route output did not include gateway metadata."}},
    {"Default route", {"Could not query default route."}},
    {"iCloud host reachability", {"www.icloud.com appears reachable."}},
    {"iCloud host reachability", {"www.icloud.com appears not reachable from current network state."}},
    {"DNS resolution", {"DNS resolution for www.icloud.com returned addresses."}},
    {"DNS resolution", {"DNS resolution returned no addresses."}},
    {"Network scope",
     {"Current checks cover reachability-class signals; deep throughput diagnostics remain optional and "
      "desktop-first."}},

    {"Disk capacity", {"Could not read disk capacity metadata."}},
    {"Disk capacity", {"{} GB free of {} GB."}},
    {"Swap usage", {"total = {}M  used = {}M  free = {}M"}, true},
    {"Swap usage", {"total = {}M  used = {}M  free = {}M  (encrypted)"}, true},
    {"SMART tooling", {"smartctl detected; deeper disk SMART checks can be added."}},
    {"SMART tooling", {"smartctl not detected. Install from Tools tab for deeper disk health checks."}},

    {"Battery level", {"{}%"}},
    {"Battery level", {"Unavailable on this device or power source."}},
    {"Charging", {"Charging"}},
    {"Charging", {"Not charging"}},
    {"Low Power Mode", {"Enabled"}},
    {"Low Power Mode", {"Disabled"}},
    {"Upload power risk", {"Pending uploads exist; avoid battery-critical states before completion."}},

    {"CPU load average", {"1m {} · 5m {} · 15m {}"}},
    {"CPU usage sample", {"CPU usage: {}% user, {}% sys, {}% idle"}, true},
    {"Temperature probe", {"osx-cpu-temp detected for exact temperature readings."}},
    {"Temperature probe", {"Exact CPU temperature unavailable by default. Install osx-cpu-temp from Tools tab."}},
    {"Thermal state", {"Nominal"}},
    {"Thermal state", {"Fair"}},
    {"Thermal state", {"Serious"}},
    {"Thermal state", {"Critical"}},
    {"Thermal state", {"Unknown"}},

    {"Scan freshness", {"Latest scan is older than 5 minutes. Run a fresh scan before high-stakes decisions."}},
    {"Scan freshness", {"Latest scan is recent (within 5 minutes)."}},
    {"Sleep/shutdown risk", {"Pending uploads exist. Avoid sleep/shutdown until trust returns safe."}},
    {"Sleep/shutdown risk", {"No pending uploads detected in current scan."}},
    {"Diagnostic scope",
     {"Checks are based on observable local signals and selected probes; this is not a complete kernel-level trace of "
      "every subsystem."}},
});

constexpr auto kActions = std::to_array<KnownAction>({
    {"You are clear", "No blockers were detected. Keep scans running before major travel or shutdown events."},
    {"Reconnect missing watchlist folders",
     "Open Watchlist and remove/re-add any folder paths that no longer exist on this Mac."},
    {"Resolve file conflicts first",
     "Open conflicted files and decide which version is canonical before more edits happen."},
    {"Stabilize network and re-check",
     "Confirm reliable internet, then run scan again before trying deeper troubleshooting."},
    {"Keep Mac awake until pending uploads clear",
     "Avoid shutdown or travel until pending files drop to zero in the next scan cycle."},
    {"Move critical folders into iCloud Drive", "Folders outside iCloud cannot be covered by upload trust checks."},
    {"Run another scan in 2-3 minutes", "If blockers persist across scans, export a proof packet for support."},
    {"Add a critical folder", "Start with client work, school, or invoices so the score reflects what matters."},
});

constexpr auto kSummaries = std::to_array<KnownText>({
    {"No blockers detected in your watchlist."},
    {"Upload trust is strong. {} files are cloud-only on this Mac."},
    {"Minor issues found, but critical upload risk appears clear."},
    {"{} issues found. Review blockers before leaving or shutting down."},
    {"Sync trust is low: {} pending uploads and {} errors need attention."},
    {"No watchlist folders are configured yet."},
    {"Add a critical folder and run your first scan."},
});

constexpr auto kUnavailable = std::to_array<KnownText>(
    {{"The folder path does not exist on this Mac."}, {"The folder exists but cannot be read."}});
constexpr auto kOutside =
    std::to_array<KnownText>({{"This folder is outside the iCloud Drive path, so upload trust is unknown."}});
constexpr auto kConflict = std::to_array<KnownText>({{"Conflict state reported for ", relativePath, "."}});
constexpr auto kStalled = std::to_array<KnownText>({{"Upload appears stuck for more than 20 minutes."}});
constexpr auto kPending = std::to_array<KnownText>({{"Still pending upload."}});
constexpr auto kCloudOnly = std::to_array<KnownText>({{"File is in cloud-only state on this Mac."}});

// The system's words for a failed transfer are a subject, what could not be done to it, and why.
constexpr auto kSubjects = std::to_array<std::string_view>({"The file", "The item", "The document", "The folder"});
constexpr auto kNamedSubjects =
    std::to_array<std::string_view>({"“", "The file “", "The item “", "The document “", "The folder “"});
constexpr auto kFailures = std::to_array<std::string_view>({
    " couldn’t be uploaded to iCloud",
    " couldn’t be uploaded",
    " couldn’t be downloaded from iCloud",
    " couldn’t be downloaded",
    " couldn’t be opened",
    " couldn’t be read",
    " couldn’t be saved",
});
constexpr auto kCauses = std::to_array<std::string_view>({
    ".",
    " because there isn’t enough space in your iCloud account.",
    " because there isn’t enough space.",
    " because the iCloud servers are unavailable.",
    " because the request timed out.",
    " because the Internet connection appears to be offline.",
    " because the network connection was lost.",
    " because there is no such file.",
    " because it isn’t in the correct format.",
    " because you don’t have permission to view it.",
    " because you don’t have permission.",
});
// Some of the system's errors have a sentence of their own, and others a number alone.
constexpr auto kSystemSentences = std::to_array<KnownText>({
    {"The request timed out."},
    {"The Internet connection appears to be offline."},
    {"The network connection was lost."},
    {"Could not connect to the server."},
    {"A server with the specified hostname could not be found."},
    {"The operation couldn’t be completed. (NSCocoaErrorDomain error {}.)"},
    {"The operation couldn’t be completed. (NSPOSIXErrorDomain error {}.)"},
    {"The operation couldn’t be completed. (NSURLErrorDomain error {}.)"},
    {"The operation couldn’t be completed. (NSFileProviderErrorDomain error {}.)"},
    {"The operation couldn’t be completed. (CKErrorDomain error {}.)"},
});

/// Takes a number away from the beginning of a text: digits, with a sign and a point where there are any.
bool takeNumber(std::string_view& text) {
  std::string_view rest = text;
  const auto takeDigits = [&rest] {
    const std::size_t count = std::min(rest.find_first_not_of("0123456789"), rest.size());
    rest.remove_prefix(count);
    return count > 0;
  };
  if (rest.starts_with('-')) {
    rest.remove_prefix(1);
  }
  if (!takeDigits()) {
    return false;
  }
  text = rest;
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    if (takeDigits()) {
      text = rest;
    }
  }
  return true;
}

/// Whether a text is the sentence, with a number for each "{}".
bool isSentence(std::string_view sentence, std::string_view text) {
  for (std::size_t gap = sentence.find("{}"); gap != std::string_view::npos; gap = sentence.find("{}")) {
    if (!text.starts_with(sentence.substr(0, gap))) {
      return false;
    }
    text.remove_prefix(gap);
    sentence.remove_prefix(gap + 2);
    if (!takeNumber(text)) {
      return false;
    }
  }
  return text == sentence;
}

}  // namespace

std::span<const KnownFinding> knownFindings() {
  return kFindings;
}

std::span<const KnownAction> knownActions() {
  return kActions;
}

std::span<const KnownText> knownSummaries() {
  return kSummaries;
}

std::span<const KnownText> knownDetails(BlockerReason reason) {
  switch (reason) {
    case BlockerReason::unavailableFolder:
      return kUnavailable;
    case BlockerReason::outsideICloud:
      return kOutside;
    case BlockerReason::unresolvedConflict:
      return kConflict;
    case BlockerReason::stalledUpload:
      return kStalled;
    case BlockerReason::notUploaded:
      return kPending;
    case BlockerReason::notDownloaded:
      return kCloudOnly;
    case BlockerReason::uploadError:
    case BlockerReason::downloadError:
      break;
  }
  return {};
}

std::optional<NameFound> findName(const KnownText& known, std::string_view text) {
  if (known.place == none) {
    return isSentence(known.before, text) ? std::optional(NameFound{.before = text}) : std::nullopt;
  }
  const std::size_t around = known.before.size() + known.after.size();
  if (text.size() < around || !text.starts_with(known.before) || !text.ends_with(known.after)) {
    return std::nullopt;
  }
  const std::string_view found = text.substr(known.before.size(), text.size() - around);
  // A whole path has parts that are no names, which the sentence does not tell apart.
  const bool isAsked = known.place != relativePath || !found.starts_with('/');
  return isAsked ? std::optional(NameFound{known.place, known.before, found, known.after}) : std::nullopt;
}

std::optional<NameFound> findNameInSystemWords(std::string_view text) {
  for (const KnownText& known : kSystemSentences) {
    if (isSentence(known.before, text)) {
      return NameFound{.before = text};
    }
  }
  for (const std::string_view cause : kCauses) {
    if (!text.ends_with(cause)) {
      continue;
    }
    const std::string_view untilCause = text.substr(0, text.size() - cause.size());
    for (const std::string_view failure : kFailures) {
      if (!untilCause.ends_with(failure)) {
        continue;
      }
      const std::string_view subject = untilCause.substr(0, untilCause.size() - failure.size());
      if (std::ranges::find(kSubjects, subject) != kSubjects.end()) {
        return NameFound{.before = text};
      }
      constexpr std::string_view kEnd = "”";
      for (const std::string_view named : kNamedSubjects) {
        if (subject.size() >= named.size() + kEnd.size() && subject.starts_with(named) && subject.ends_with(kEnd)) {
          const std::size_t length = subject.size() - named.size() - kEnd.size();
          return NameFound{name, named, subject.substr(named.size(), length), text.substr(named.size() + length)};
        }
      }
    }
  }
  return std::nullopt;
}

}  // namespace cirrovane
