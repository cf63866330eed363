#include "ui/viewmodels/TimelineViewModel.h"

#include "ui/viewmodels/CountText.h"
#include "ui/viewmodels/SaveFailureText.h"
#include "ui/viewmodels/SnapshotText.h"
#include "ui/viewmodels/Text.h"

#include <QMetaObject>
#include <QStringList>
#include <cstddef>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

QString verdictOf(const ScanSnapshot& snapshot) {
  if (snapshot.safeToClose) {
    return QStringLiteral("Safe");
  }
  const QString reason = topReasonTitle(snapshot);
  return reason.isEmpty() ? QStringLiteral("Unsafe") : reason;
}

QString localText(const ScanSnapshot& snapshot) {
  return snapshot.localAvailabilityScore ? QStringLiteral("Local %1").arg(*snapshot.localAvailabilityScore)
                                         : QStringLiteral("Local -");
}

}  // namespace

void TimelineViewModel::begin() {
  follow(dashboard().historyStore().publishedSnapshots());
  follow(dashboard().publishedExportNote());
}

void TimelineViewModel::update() {
  snapshots_ = ScoreHistory(dashboard().fullHistory());
  std::vector<ScanRow> rows;
  for (const ScanSnapshot& snapshot : dashboard().recentHistory()) {
    rows.push_back(rowOf(snapshot));
  }
  rows_.setRows(std::move(rows));
  saveFailure_ = saveFailureText("scan history", dashboard().historyStore().saveFailure());
  exportNote_ = toDisplay(dashboard().exportNote().value_or(""));
  exportedFile_ = dashboard().exportedFile();
}

ScanRow TimelineViewModel::rowOf(const ScanSnapshot& snapshot) const {
  const TimeText& timeText = context()->timeText();
  return {.time = toQString(timeText.moment(snapshot.timestamp, dashboard().now())),
          .date = toQString(timeText.dayAndTime(snapshot.timestamp)),
          .score = QStringLiteral("Score %1").arg(snapshot.score),
          .local = localText(snapshot),
          .blockers = countText(snapshot.blockerCount, "blocker"),
          .verdict = verdictOf(snapshot),
          .tone = toneOf(snapshot.status),
          .key = toQString(snapshot.id.text())};
}

QString TimelineViewModel::scanText(int number) const {
  if (context() == nullptr || number < 0) {
    return {};
  }
  const std::vector<const ScanSnapshot*> scans = oldestFirst(dashboard().fullHistory());
  const auto place = static_cast<std::size_t>(number);
  if (place >= scans.size()) {
    return {};
  }
  const ScanRow row = rowOf(*scans[place]);
  QStringList parts = {row.date, row.score, row.local, row.blockers};
  if (const QString blocker = topBlockerLine(*scans[place]); !blocker.isEmpty()) {
    parts.append(blocker);
  }
  return parts.join(QStringLiteral(" · "));
}

void TimelineViewModel::revealExport() {
  if (exportedFile_) {
    reveal(*exportedFile_);
  }
}

}  // namespace cirrovane
