#include "ui/viewmodels/SnapshotViewModel.h"

#include "coordinator/UploadWords.h"
#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/CoverageText.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/SnapshotText.h"
#include "ui/viewmodels/Text.h"

namespace cirrovane {

SnapshotViewModel::SnapshotViewModel(DashboardViewModel& dashboard, AppUpdateService& updates,
                                     const CoverageReview& coverage, const TimeText& timeText, QObject* parent)
    : SurfaceViewModel(dashboard, updates, parent),
      coverage_(coverage),
      timeText_(timeText),
      lastFailed_(dashboard.lastFailedSnapshot()) {
  follow(dashboard.publishedReport(), [this] { emit reportChanged(); });
  follow(dashboard.publishedVerdict(), [this] {
    emit reportChanged();
    emit coverageChanged();
  });
  follow(coverage.report(), [this] { emit coverageChanged(); });
  follow(dashboard.publishedLiveness(), [this] { emit reportChanged(); });
  follow(dashboard.publishedUploads(), [this] { emit uploadsChanged(); });
  follow(dashboard.historyStore().publishedSnapshots(), [this] {
    lastFailed_ = this->dashboard().lastFailedSnapshot();
    emit historyChanged();
  });
  follow(dashboard.publishedExportNote(), [this] { emit exportNoteChanged(); });
}

Tone SnapshotViewModel::tone() const {
  return toneOf(dashboard().verdict().sign());
}

QString SnapshotViewModel::statusLabel() const {
  return toQString(healthWords(dashboard().verdict().sign()).label);
}

QString SnapshotViewModel::menuBarSymbol() const {
  return toQString(healthWords(dashboard().verdict().sign()).symbol);
}

QString SnapshotViewModel::score() const {
  return QString::number(dashboard().report().score);
}

QString SnapshotViewModel::liveness() const {
  return livenessText(dashboard().verdict(), dashboard().liveness());
}

QString SnapshotViewModel::verdict() const {
  const ShownVerdict& verdict = dashboard().verdict();
  if (verdict.isStale()) {
    return QStringLiteral("Safe to close ") + asOfText(verdict, timeText_, dashboard().now());
  }
  return verdict.safeToClose ? QStringLiteral("Safe to close now") : QStringLiteral("Do not close yet");
}

QString SnapshotViewModel::verdictNote() const {
  return staleReason(dashboard().verdict());
}

QString SnapshotViewModel::unvouched() const {
  return unvouchedText(coverage_.report().value());
}

bool SnapshotViewModel::isYesMarked() const {
  return !yesNote(dashboard().verdict(), coverage_.report().value()).isEmpty();
}

QString SnapshotViewModel::scores() const {
  return QStringLiteral("Upload Trust %1 · Local %2")
      .arg(dashboard().report().score)
      .arg(dashboard().report().localAvailabilityScore);
}

QString SnapshotViewModel::uploads() const {
  return toQString(uploadsSentence(dashboard().uploads(), dashboard().now()));
}

QString SnapshotViewModel::toolTip() const {
  QString words = QStringLiteral("Cirrovane: %1. %2.").arg(statusLabel(), verdict());
  for (const QString& more : {verdictNote(), uploads()}) {
    words += more.isEmpty() ? more : QLatin1Char(' ') + more;
  }
  return words;
}

QString SnapshotViewModel::topBlocker() const {
  if (!hasTopBlocker()) {
    return {};
  }
  const SyncBlocker& blocker = dashboard().report().blockers.front();
  return blockerLine(blocker.reason, blocker.filePath);
}

QString SnapshotViewModel::lastFailedTime() const {
  return lastFailed_ ? toQString(timeText_.moment(lastFailed_->timestamp, dashboard().now())) : QString();
}

QString SnapshotViewModel::lastFailedDate() const {
  return lastFailed_ ? toQString(timeText_.dayAndTime(lastFailed_->timestamp)) : QString();
}

QString SnapshotViewModel::lastFailedReason() const {
  return lastFailed_ ? topReasonTitle(*lastFailed_) : QString();
}

QString SnapshotViewModel::exportNote() const {
  return toDisplay(dashboard().exportNote().value_or(""));
}

bool SnapshotViewModel::canRevealExport() const {
  return dashboard().exportedFile().has_value();
}

void SnapshotViewModel::revealExport() {
  if (const auto file = dashboard().exportedFile()) {
    dashboard().revealInFinder(*file);
  }
}

}  // namespace cirrovane
