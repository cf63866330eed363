#include "ui/viewmodels/AwarenessViewModel.h"

#include "ui/viewmodels/CoverageText.h"
#include "ui/viewmodels/SnapshotText.h"
#include "ui/viewmodels/Text.h"

#include <optional>

namespace cirrovane {
namespace {

/// The sign of a row that found nothing. It is a good one only after a scan.
QString allClearSymbol(bool isKnown) {
  return isKnown ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("ellipsis.circle");
}
Tone allClearTone(bool isKnown) {
  return isKnown ? Tone::Good : Tone::Neutral;
}

}  // namespace

void AwarenessViewModel::begin() {
  coverageGapCount_ = dashboard().coverageGapCount();
  // A report may hold very many blockers, so they are counted once a report.
  reportSubscription_ = dashboard().publishedReport().afterChange(
      [this](const Shared<SyncHealthReport>& report) { coverageGapCount_ = cirrovane::coverageGapCount(*report); });
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
  follow(dashboard().historyStore().publishedSnapshots());
  follow(context()->coverage().report());
}

void AwarenessViewModel::update() {
  isKnown_ = dashboard().verdict().isKnown();
  recentStability_ = toQString(dashboard().recentStabilityText());
  rows_.setRows({coverageRow(), cloudOnlyRow(), failedRow(), safeRow(), unvouchedRow()});
}

SignalRow AwarenessViewModel::coverageRow() const {
  if (coverageGapCount_ == 0) {
    return {.key = QStringLiteral("coverage"),
            .symbol = allClearSymbol(isKnown_),
            .tone = allClearTone(isKnown_),
            .title = QStringLiteral("Coverage Gaps"),
            .text = QStringLiteral("No watchlist coverage gaps detected.")};
  }
  return {
      .key = QStringLiteral("coverage"),
      .symbol = QStringLiteral("exclamationmark.triangle.fill"),
      .tone = Tone::Warning,
      .title = QStringLiteral("Coverage Gaps"),
      .text =
          QStringLiteral("%1 items are outside iCloud or unavailable, so trust is reduced.").arg(coverageGapCount_)};
}

SignalRow AwarenessViewModel::cloudOnlyRow() const {
  const std::int64_t count = dashboard().report().metrics.notDownloaded;
  if (count == 0) {
    return {.key = QStringLiteral("cloudOnly"),
            .symbol = allClearSymbol(isKnown_),
            .tone = allClearTone(isKnown_),
            .title = QStringLiteral("Cloud-Only Files"),
            .text = QStringLiteral("No cloud-only files currently detected.")};
  }
  return {.key = QStringLiteral("cloudOnly"),
          .symbol = QStringLiteral("icloud.fill"),
          .tone = Tone::Info,
          .title = QStringLiteral("Cloud-Only Files"),
          .text = QStringLiteral("%1 files are cloud-only on this device. They can still be safely in iCloud, "
                                 "but may be unavailable offline.")
                      .arg(count)};
}

SignalRow AwarenessViewModel::failedRow() const {
  const std::optional<ScanSnapshot> failed = dashboard().lastFailedSnapshot();
  if (!failed) {
    return {.key = QStringLiteral("failed"),
            .symbol = QStringLiteral("info.circle.fill"),
            .tone = Tone::Info,
            .title = QStringLiteral("Last Scan Result"),
            .text = QStringLiteral("No failed scans in history"),
            .explanation = QStringLiteral("This can mean stable sync, or simply not enough scan history yet.")};
  }
  const QString reason = topReasonTitle(*failed);
  const auto& folder = failed->topBlockerFolderName;
  const auto& path = failed->topBlockerFilePath;
  const QString noPath = QStringLiteral("Location unavailable because older snapshots did not capture file paths.");
  return {.key = QStringLiteral("failed"),
          .symbol = QStringLiteral("xmark.octagon.fill"),
          .tone = Tone::Critical,
          .title = QStringLiteral("Last Failed Sync"),
          .text = verdictTimeText(*failed, context()->timeText(), dashboard().now()),
          .reason = reason.isEmpty() ? QString() : QStringLiteral("Reason: ") + reason,
          .folder = folder ? QStringLiteral("Folder: ") + toDisplay(*folder) : QString(),
          .explanation = path ? QString() : noPath,
          .date = toQString(context()->timeText().dayAndTime(failed->timestamp)),
          .path = path ? toDisplay(*path) : QString()};
}

SignalRow AwarenessViewModel::safeRow() const {
  const std::optional<ScanSnapshot> safe = dashboard().lastSafeSnapshot();
  if (!safe) {
    return {.key = QStringLiteral("safe"),
            .symbol = QStringLiteral("info.circle.fill"),
            .tone = Tone::Info,
            .title = QStringLiteral("Last Confirmed Safe Scan"),
            .text = QStringLiteral("None yet in current history.")};
  }
  return {.key = QStringLiteral("safe"),
          .symbol = QStringLiteral("checkmark.circle.fill"),
          .tone = Tone::Good,
          .title = QStringLiteral("Last Confirmed Safe Scan"),
          .text = verdictTimeText(*safe, context()->timeText(), dashboard().now()),
          .date = toQString(context()->timeText().dayAndTime(safe->timestamp))};
}

SignalRow AwarenessViewModel::unvouchedRow() const {
  const std::optional<Shared<CoverageReport>>& report = context()->coverage().report().value();
  const bool isComplete = !report || (*report)->complete;
  return {.key = QStringLiteral("unvouched"),
          .symbol = isComplete ? allClearSymbol(report.has_value()) : QStringLiteral("exclamationmark.triangle.fill"),
          .tone = isComplete ? allClearTone(report.has_value()) : Tone::Warning,
          .title = QStringLiteral("Not Vouched For"),
          .text = coverageSummary(report),
          .hasReview = true};
}

void AwarenessViewModel::revealLastFailed() {
  if (context() == nullptr) {
    return;
  }
  const std::optional<ScanSnapshot> failed = dashboard().lastFailedSnapshot();
  if (failed && failed->topBlockerFilePath) {
    reveal(*failed->topBlockerFilePath);
  }
}

}  // namespace cirrovane
