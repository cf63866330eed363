#include "coordinator/MetricsFile.h"

#include "coordinator/DefaultsKeys.h"
#include "coordinator/FleetMetrics.h"

#include <utility>
#include <vector>

namespace cirrovane {
namespace {

/// All that a text is made of, for another thread.
struct Known {
  Shared<SyncHealthReport> report;
  std::optional<Shared<CoverageReport>> coverage;
  PendingUploads uploads;
  std::vector<ScanSnapshot> history;
  std::vector<IncidentRecord> incidents;
  std::optional<ProbeFailures> probeFailures;
  Liveness liveness;
  std::string version;
};

std::string metricsOf(const Known& known) {
  return fleetMetrics({.report = *known.report,
                       .coverage = known.coverage ? &**known.coverage : nullptr,
                       .uploads = known.uploads,
                       .history = known.history,
                       .incidents = known.incidents,
                       .version = known.version,
                       .probeFailures = known.probeFailures,
                       .liveness = known.liveness});
}

}  // namespace

MetricsFile::MetricsFile(const RefreshCycle& cycle, const PublishedCoverage& coverage,
                         MetricsFileEnvironment environment)
    : cycle_(cycle),
      coverage_(coverage),
      environment_(std::move(environment)),
      place_(environment_.userDefaults.text(kMetricsFileKey).value_or("")),
      isOn_(!place_.empty() && environment_.userDefaults.choice(kMetricsEnabledKey).value_or(false)) {
  subscription_ = cycle_.isScanning().afterChange([this](bool isScanning) {
    if (!isScanning) {
      write();
    }
  });
}

void MetricsFile::writeTo(const std::string& place) {
  place_ = place;
  static_cast<void>(environment_.userDefaults.set(kMetricsFileKey, place_));
  choose(true);
}

void MetricsFile::setOn(bool isOn) {
  choose(isOn && !place_.empty());
}

void MetricsFile::choose(bool isOn) {
  isOn_ = isOn;
  static_cast<void>(environment_.userDefaults.set(kMetricsEnabledKey, isOn_));
  failure_.set(std::nullopt);
  // A refresh under way is followed by its own figures.
  if (cycle_.verdict().value().isKnown() && !cycle_.isScanning().value()) {
    write();
  }
}

void MetricsFile::write() {
  if (!isOn_) {
    return;
  }
  if (isWriting_) {
    isOutdated_ = true;
    return;
  }
  isWriting_ = true;
  isOutdated_ = false;
  Known known{cycle_.report().value(),           coverage_.value(),          cycle_.uploads().value().totals,
              cycle_.historyStore().snapshots(), cycle_.incidents().value(), cycle_.probeFailures(),
              cycle_.liveness().value(),         environment_.version};
  environment_.writing.post([this, known = std::move(known), place = place_, alive = std::weak_ptr(alive_),
                             &storage = environment_.fileStorage, &main = environment_.main] {
    // Whoever collects it runs as another user.
    std::optional<Failure> failure = storage.writeAtomically(
        place, FileAccess::asUsual, [&](const ByteSink& sink) { return sink(metricsOf(known)); });
    main.post([this, place, alive, failure = std::move(failure)]() mutable {
      if (!alive.expired()) {
        finish(place, std::move(failure));
      }
    });
  });
}

void MetricsFile::finish(const std::string& place, std::optional<Failure> failure) {
  isWriting_ = false;
  const bool isAsked = isOn_ && place == place_;
  // One that lasts is told once.
  if (isAsked && failure != failure_.value()) {
    failure_.set(std::move(failure));
  }
  if (isOutdated_) {
    write();
  }
}

}  // namespace cirrovane
