#include "ui/viewmodels/UploadsViewModel.h"

#include "coordinator/UploadWords.h"
#include "ui/viewmodels/Text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace cirrovane {

void UploadsViewModel::begin() {
  follow(dashboard().publishedUploads());
  follow(dashboard().publishedDiagnostics());
}

void UploadsViewModel::update() {
  const UploadStanding& standing = dashboard().uploads();
  const Time now = dashboard().now();
  const PendingUploads totals = totalsAt(standing, now);
  const bool isLeft = totals.pendingFiles > 0;
  amount_ = isLeft ? toQString(leftToUploadText(totals)) : QString();
  timeLeft_ = isLeft ? toQString(timeLeftText(totals, quietAt(standing, now))) : QString();
  isMoving_ = cirrovane::isMoving(standing, now);
  share_ = standing.share;
  stuckText_ = totals.stuckFiles > 0 ? toQString(cirrovane::stuckText(totals.stuckFiles)) : QString();
  updateStuck(standing, now);
}

void UploadsViewModel::updateStuck(const UploadStanding& standing, Time now) {
  const std::vector<DiagnosticFinding>& findings = dashboard().diagnostics();
  std::vector<StuckUploadRow> rows;
  rows.reserve(standing.stuck.size());
  for (const StuckUpload& file : standing.stuck) {
    rows.push_back({.path = toDisplay(file.filePath),
                    .size = toQString(bytesText(file.bytes)),
                    .waiting = QStringLiteral("Waiting for ") + toQString(waitText(now - file.pendingSince)),
                    .since = QStringLiteral("Since ") + toQString(context()->timeText().dayAndTime(file.pendingSince)),
                    .error = toDisplay(file.error),
                    .nextStep = toQString(nextStepText(file.error, findings)),
                    .filePath = file.filePath});
  }
  const auto unlisted = standing.totals.stuckFiles - std::ssize(rows);
  unlistedText_ =
      unlisted > 0 && !rows.empty() ? QStringLiteral("%1 more have waited less long.").arg(unlisted) : QString();
  stuck_.setRows(std::move(rows));

  std::vector<HindranceRow> hindrances;
  for (const DiagnosticFinding& finding : findingsAgainstUploads(findings)) {
    hindrances.push_back({toQString(finding.title), toDisplay(finding.detail)});
  }
  hindrances_.setRows(std::move(hindrances));
}

QString UploadsViewModel::shareText() const {
  // All of it has gone only once nothing waits.
  return QStringLiteral("%1%").arg(std::min(static_cast<int>(std::floor(share_ * 100)), 99));
}

void UploadsViewModel::reveal(int row) {
  if (const StuckUploadRow* shown = stuck_.find(row)) {
    PageViewModel::reveal(shown->filePath);
  }
}

}  // namespace cirrovane
