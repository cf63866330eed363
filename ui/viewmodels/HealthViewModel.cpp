#include "ui/viewmodels/HealthViewModel.h"

#include "core/TrustScoring.h"
#include "ui/viewmodels/CoverageText.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/Text.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

/// The tone of a count that should be zero.
Tone toneAboveZero(std::int64_t count, Tone tone) {
  return count > 0 ? tone : Tone::Plain;
}

}  // namespace

void HealthViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
  follow(dashboard().publishedLiveness());
  follow(dashboard().watchlist().publishedFolders());
  follow(context()->coverage().report());
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
  std::vector<MetricRow> rows;
  const auto add = [&](const char* title, std::int64_t value, Tone tone = Tone::Plain) {
    rows.push_back({.title = toQString(title), .value = QString::number(value), .tone = tone});
  };
  const ScanMetrics& metrics = summary_.metrics;
  add("Files", metrics.totalFiles);
  add("Pending", metrics.pendingUploads, toneAboveZero(metrics.pendingUploads, Tone::Caution));
  add("Conflicts", metrics.unresolvedConflicts, toneAboveZero(metrics.unresolvedConflicts, Tone::Critical));
  add("Errors", metrics.errors, toneAboveZero(metrics.errors, Tone::Critical));
  add("Watchlist", static_cast<std::int64_t>(dashboard().watchlist().folders().size()));
  add("Local Ready", summary_.localAvailabilityScore);
  add("Cloud-Only", metrics.notDownloaded);
  metrics_.setRows(std::move(rows));
}

Tone HealthViewModel::tone() const {
  return toneOf(verdict_.sign());
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

Tone HealthViewModel::verdictTone() const {
  return cirrovane::verdictTone(verdict_);
}

QString HealthViewModel::verdictNote() const {
  return context() == nullptr ? QString() : staleNote(verdict_, context()->timeText(), dashboard().now());
}

QString HealthViewModel::coverageNote() const {
  return context() == nullptr ? QString() : yesNote(verdict_, context()->coverage().report().value());
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

Tone HealthViewModel::localTone() const {
  if (!verdict_.isKnown()) {
    return Tone::Neutral;
  }
  const bool isSafe = healthState(summary_.localAvailabilityScore, {}) == HealthState::safe;
  return isSafe ? Tone::Good : Tone::Caution;
}

QString HealthViewModel::updatedText() const {
  if (context() == nullptr) {
    return {};
  }
  return verdict_.isKnown() ? QStringLiteral("Updated ") +
                                  toQString(context()->timeText().moment(summary_.generatedAt, dashboard().now()))
                            : QStringLiteral("Not scanned yet");
}

}  // namespace cirrovane
