#include "ui/viewmodels/AwarenessViewModel.h"

#include "ui/viewmodels/SnapshotText.h"
#include "ui/viewmodels/Text.h"

#include <optional>

namespace cirrovane {
namespace {

struct Signal {
  const char* symbol;
  const char* severity;
  const char* title;
  QString text;
  QString reason = {};
  QString folder = {};
  QString explanation = {};
  QString date = {};
  QString path = {};
};

/// The sign of a row that found nothing: a good one only after a scan.
const char* allClearSymbol(bool isKnown) {
  return isKnown ? "checkmark.circle.fill" : "ellipsis.circle";
}
const char* allClearSeverity(bool isKnown) {
  return isKnown ? "ok" : "none";
}

/// The key outlives a change of the title, so that the row stays and only its words change.
RowListModel::Row rowOf(const char* key, const Signal& signal) {
  return {toQString(key),
          {toQString(signal.symbol), toQString(signal.severity), toQString(signal.title), signal.text, signal.reason,
           signal.folder, signal.explanation, signal.date, signal.path}};
}

}  // namespace

AwarenessViewModel::AwarenessViewModel(QObject* parent)
    : PageViewModel(parent),
      rows_({"symbol", "severity", "title", "text", "reason", "folder", "explanation", "date", "path"}) {}

void AwarenessViewModel::begin() {
  coverageGapCount_ = dashboard().coverageGapCount();
  // Counted once a report, and not at every update: the report may hold very many blockers.
  reportSubscription_ = dashboard().publishedReport().afterChange(
      [this](const Shared<SyncHealthReport>& report) { coverageGapCount_ = cirrovane::coverageGapCount(*report); });
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
  follow(dashboard().historyStore().publishedSnapshots());
}

void AwarenessViewModel::update() {
  isKnown_ = dashboard().verdict().isKnown();
  recentStability_ = toQString(dashboard().recentStabilityText());
  rows_.setRows({coverageRow(), cloudOnlyRow(), failedRow(), safeRow()});
}

RowListModel::Row AwarenessViewModel::coverageRow() const {
  if (coverageGapCount_ == 0) {
    return rowOf("coverage", {.symbol = allClearSymbol(isKnown_),
                              .severity = allClearSeverity(isKnown_),
                              .title = "Coverage Gaps",
                              .text = QStringLiteral("No watchlist coverage gaps detected.")});
  }
  return rowOf(
      "coverage",
      {.symbol = "exclamationmark.triangle.fill",
       .severity = "warning",
       .title = "Coverage Gaps",
       .text =
           QStringLiteral("%1 items are outside iCloud or unavailable, so trust is reduced.").arg(coverageGapCount_)});
}

RowListModel::Row AwarenessViewModel::cloudOnlyRow() const {
  const std::int64_t count = dashboard().report().metrics.notDownloaded;
  if (count == 0) {
    return rowOf("cloudOnly", {.symbol = allClearSymbol(isKnown_),
                               .severity = allClearSeverity(isKnown_),
                               .title = "Cloud-Only Files",
                               .text = QStringLiteral("No cloud-only files currently detected.")});
  }
  return rowOf("cloudOnly",
               {.symbol = "icloud.fill",
                .severity = "info",
                .title = "Cloud-Only Files",
                .text = QStringLiteral("%1 files are cloud-only on this device. They can still be safely in iCloud, "
                                       "but may be unavailable offline.")
                            .arg(count)});
}

RowListModel::Row AwarenessViewModel::failedRow() const {
  const std::optional<ScanSnapshot> failed = dashboard().lastFailedSnapshot();
  if (!failed) {
    return rowOf("failed",
                 {.symbol = "info.circle.fill",
                  .severity = "info",
                  .title = "Last Scan Result",
                  .text = QStringLiteral("No failed scans in history"),
                  .explanation = QStringLiteral("This can mean stable sync, or simply not enough scan history yet.")});
  }
  const QString reason = topReasonTitle(*failed);
  const auto& folder = failed->topBlockerFolderName;
  const auto& path = failed->topBlockerFilePath;
  const QString noPath = QStringLiteral("Location unavailable because older snapshots did not capture file paths.");
  return rowOf("failed", {.symbol = "xmark.octagon.fill",
                          .severity = "error",
                          .title = "Last Failed Sync",
                          .text = verdictTimeText(*failed, context()->timeText()),
                          .reason = reason.isEmpty() ? QString() : QStringLiteral("Reason: ") + reason,
                          .folder = folder ? QStringLiteral("Folder: ") + toDisplay(*folder) : QString(),
                          .explanation = path ? QString() : noPath,
                          .date = toQString(context()->timeText().dayAndTime(failed->timestamp)),
                          .path = path ? toDisplay(*path) : QString()});
}

RowListModel::Row AwarenessViewModel::safeRow() const {
  const std::optional<ScanSnapshot> safe = dashboard().lastSafeSnapshot();
  if (!safe) {
    return rowOf("safe", {.symbol = "info.circle.fill",
                          .severity = "info",
                          .title = "Last Confirmed Safe Scan",
                          .text = QStringLiteral("None yet in current history.")});
  }
  return rowOf("safe", {.symbol = "checkmark.circle.fill",
                        .severity = "ok",
                        .title = "Last Confirmed Safe Scan",
                        .text = verdictTimeText(*safe, context()->timeText()),
                        .date = toQString(context()->timeText().dayAndTime(safe->timestamp))});
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
