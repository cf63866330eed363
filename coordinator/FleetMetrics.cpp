#include "coordinator/FleetMetrics.h"

#include "coordinator/HistorySummary.h"
#include "core/BlockerReason.h"
#include "core/GapKind.h"

#include <chrono>
#include <cstdint>
#include <iterator>
#include <map>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// A label's value as the format writes it.
std::string asLabelValue(std::string_view text) {
  std::string written = "\"";
  for (const char character : text) {
    if (character == '\n') {
      written += "\\n";
      continue;
    }
    if (character == '\\' || character == '"') {
      written += '\\';
    }
    written += character;
  }
  return written + '"';
}

double secondsOf(Time time) {
  return std::chrono::duration<double>(time.time_since_epoch()).count();
}

class MetricsWriter {
 public:
  /// Begins a family.
  void family(std::string_view name, std::string_view help, std::string_view type = "gauge") {
    name_ = name;
    fmt::format_to(std::back_inserter(text_), "# HELP cirrovane_{0} {1}\n# TYPE cirrovane_{0} {2}\n", name, help, type);
  }
  void sample(std::int64_t value) { fmt::format_to(std::back_inserter(text_), "cirrovane_{} {}\n", name_, value); }
  void sample(std::string_view label, std::string_view labelValue, std::int64_t value) {
    fmt::format_to(std::back_inserter(text_), "cirrovane_{}{{{}={}}} {}\n", name_, label, asLabelValue(labelValue),
                   value);
  }

  void gauge(std::string_view name, std::string_view help, std::int64_t value) {
    family(name, help);
    sample(value);
  }
  /// A share of 0 to 100 as one of 0 to 1.
  void ratio(std::string_view name, std::string_view help, std::int64_t score) {
    family(name, help);
    fmt::format_to(std::back_inserter(text_), "cirrovane_{} {}\n", name, static_cast<double>(score) / 100);
  }
  /// In seconds since 1970.
  void moment(std::string_view name, std::string_view help, Time time) {
    family(name, help);
    fmt::format_to(std::back_inserter(text_), "cirrovane_{} {:.3f}\n", name, secondsOf(time));
  }

  std::string take() { return std::move(text_); }

 private:
  std::string text_;
  std::string_view name_;
};

void writeVerdict(const FleetFacts& facts, MetricsWriter& out) {
  const SyncHealthReport& report = facts.report;
  out.gauge("safe_to_close", "1 when closing now loses no work that is not in iCloud Drive, else 0.",
            report.safeToClose ? 1 : 0);
  out.family("health_state", "1 for the state that the machine is in, 0 for the others.");
  for (const HealthState state : {HealthState::safe, HealthState::warning, HealthState::danger}) {
    out.sample("state", rawValue(state), report.status == state ? 1 : 0);
  }
  out.ratio("upload_trust_ratio", "The score of what has reached iCloud Drive, 0 to 1.", report.score);
  out.ratio("local_availability_ratio", "The score of what is on this machine, 0 to 1.", report.localAvailabilityScore);
  out.moment("last_scan_timestamp_seconds", "When the scan began that the other figures are of.", report.generatedAt);
  const std::optional<ScanSnapshot> lastSafe = lastSnapshot(facts.history, true);
  if (report.safeToClose) {
    out.moment("last_safe_timestamp_seconds", "The latest scan that found the machine safe.", report.generatedAt);
  } else if (lastSafe) {
    out.moment("last_safe_timestamp_seconds", "The latest scan that found the machine safe.", lastSafe->timestamp);
  }
}

void writeFiles(const FleetFacts& facts, MetricsWriter& out) {
  const ScanMetrics& metrics = facts.report.metrics;
  out.gauge("watched_folders", "Folders of the watchlist.", metrics.scannedFolders);
  out.gauge("files", "Files in watched folders.", metrics.totalFiles);
  out.gauge("pending_uploads", "Files that are not in iCloud Drive yet.", metrics.pendingUploads);
  out.gauge("pending_bytes", "What files that are not in iCloud Drive yet hold.", facts.uploads.pendingBytes);
  out.gauge("stuck_uploads", "Files that have waited for too long to be only slow.", facts.uploads.stuckFiles);
  out.gauge("unresolved_conflicts", "Files with versions that exclude each other.", metrics.unresolvedConflicts);
  out.gauge("item_errors", "Missing folders, unreadable items and failed transfers.", metrics.errors);
  out.gauge("not_downloaded_files", "Files whose content is in iCloud Drive alone.", metrics.notDownloaded);
  std::map<BlockerReason, std::int64_t> blockers;
  for (const SyncBlocker& blocker : facts.report.blockers) {
    ++blockers[blocker.reason];
  }
  out.family("blockers", "What stands against closing, by its reason.");
  for (const BlockerReason reason : kAllBlockerReasons) {
    out.sample("reason", rawValue(reason), blockers[reason]);
  }
}

void writeCoverage(const CoverageReport& coverage, MetricsWriter& out) {
  out.moment("last_coverage_timestamp_seconds", "When the latest look began at what the verdict leaves out.",
             coverage.generatedAt);
  out.gauge("coverage_complete", "1 when the verdict leaves nothing out that nobody knows of, else 0.",
            coverage.complete ? 1 : 0);
  out.family("coverage_gaps", "What the verdict does not vouch for, by its kind.");
  for (const GapKind kind : kAllGapKinds) {
    out.sample("kind", rawValue(kind), coverage.gapCounts.of(kind));
  }
  out.gauge("coverage_folders_not_examined", "Watched folders whose coverage nobody could look at.",
            std::ssize(coverage.notExamined));
}

void writeIncidents(std::span<const IncidentRecord> incidents, MetricsWriter& out) {
  out.family("incidents", "What went wrong and was recorded, by whether it still does.");
  out.sample("state", "active", activeIncidentCount(incidents));
  out.sample("state", "resolved", resolvedIncidentCount(incidents));
}

void writeProbeFailures(const ProbeFailures& failures, MetricsWriter& out) {
  out.family("failed_probes", "Probes of the latest refresh that told nothing, by what became of them.");
  out.sample("outcome", "notStarted", failures.notStarted);
  out.sample("outcome", "outOfTime", failures.outOfTime);
  out.sample("outcome", "notReached", failures.notReached);
}

void writeLiveness(const Liveness& liveness, MetricsWriter& out) {
  out.family("liveness", "1 for how the verdict stands to changes of the files, 0 for the other states.");
  for (const LivenessState state : {LivenessState::live, LivenessState::catchingUp, LivenessState::notLive}) {
    out.sample("state", rawValue(state), liveness.state == state ? 1 : 0);
  }
  out.family("live_disagreements_total", "Full scans since the application started that found what nobody had told of.",
             "counter");
  out.sample(liveness.disagreements);
}

}  // namespace

std::string fleetMetrics(const FleetFacts& facts) {
  MetricsWriter out;
  out.family("build_info", "Which build this is; always 1.");
  out.sample("version", facts.version, 1);
  writeVerdict(facts, out);
  writeFiles(facts, out);
  if (facts.coverage != nullptr) {
    writeCoverage(*facts.coverage, out);
  }
  writeIncidents(facts.incidents, out);
  if (facts.probeFailures) {
    writeProbeFailures(*facts.probeFailures, out);
  }
  if (facts.liveness) {
    writeLiveness(*facts.liveness, out);
  }
  return out.take();
}

}  // namespace cirrovane
