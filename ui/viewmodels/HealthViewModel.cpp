#include "ui/viewmodels/HealthViewModel.h"

#include "core/TrustScoring.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/Text.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

/// The state whose colour a count has that should be zero.
QString stateAbove(std::int64_t count, HealthState state) {
  return count > 0 ? toQString(rawValue(state)) : QString();
}

}  // namespace

HealthViewModel::HealthViewModel(QObject* parent) : PageViewModel(parent), metrics_({"title", "value", "state"}) {}

void HealthViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
  follow(dashboard().publishedLiveness());
  follow(dashboard().watchlist().publishedFolders());
}

void HealthViewModel::update() {
  const SyncHealthReport& report = dashboard().report();
  summary_ = SyncHealthReport{.status = report.status,
                              .score = report.score,
                              .localAvailabilityScore = report.localAvailabilityScore,
                              .safeToClose = report.safeToClose,
                              .generatedAt = report.generatedAt,
                              .blockers = {},
                              .folderHealth = {},
                              .metrics = report.metrics,
                              .actions = {},
                              .summary = {}};
  verdict_ = dashboard().verdict();
  liveness_ = dashboard().liveness();
  showMetrics();
}

void HealthViewModel::showMetrics() {
  std::vector<RowListModel::Row> rows;
  const auto add = [&](const char* title, std::int64_t value, const QString& state = {}) {
    rows.push_back({toQString(title), {toQString(title), QString::number(value), state}});
  };
  const ScanMetrics& metrics = summary_.metrics;
  add("Files", metrics.totalFiles);
  add("Pending", metrics.pendingUploads, stateAbove(metrics.pendingUploads, HealthState::warning));
  add("Conflicts", metrics.unresolvedConflicts, stateAbove(metrics.unresolvedConflicts, HealthState::danger));
  add("Errors", metrics.errors, stateAbove(metrics.errors, HealthState::danger));
  add("Watchlist", static_cast<std::int64_t>(dashboard().watchlist().folders().size()));
  add("Local Ready", summary_.localAvailabilityScore);
  add("Cloud-Only", metrics.notDownloaded);
  metrics_.setRows(std::move(rows));
}

QString HealthViewModel::state() const {
  return stateName(verdict_.sign());
}

QString HealthViewModel::stateLabel() const {
  return toQString(healthWords(verdict_.sign()).label);
}

QString HealthViewModel::stateSymbol() const {
  return toQString(healthWords(verdict_.sign()).symbol);
}

QString HealthViewModel::verdict() const {
  return summary_.safeToClose ? QStringLiteral("YES") : QStringLiteral("NO");
}

QString HealthViewModel::verdictState() const {
  return stateName(cirrovane::verdictState(verdict_));
}

QString HealthViewModel::verdictNote() const {
  return context() == nullptr ? QString() : staleNote(verdict_, context()->timeText());
}

QString HealthViewModel::liveness() const {
  return livenessText(verdict_, liveness_);
}

int HealthViewModel::uploadTrust() const {
  return static_cast<int>(summary_.score);
}

int HealthViewModel::localAvailability() const {
  return static_cast<int>(summary_.localAvailabilityScore);
}

QString HealthViewModel::localState() const {
  if (!verdict_.isKnown()) {
    return {};
  }
  const bool isSafe = healthState(summary_.localAvailabilityScore, {}) == HealthState::safe;
  return toQString(rawValue(isSafe ? HealthState::safe : HealthState::warning));
}

QString HealthViewModel::updatedText() const {
  if (context() == nullptr) {
    return {};
  }
  return verdict_.isKnown()
             ? QStringLiteral("Updated ") + toQString(context()->timeText().timeOfDay(summary_.generatedAt))
             : QStringLiteral("Not scanned yet");
}

}  // namespace cirrovane
