#include "ui/viewmodels/SnapshotViewModel.h"

#include "coordinator/HistorySummary.h"
#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/SnapshotText.h"
#include "ui/viewmodels/Text.h"

#include <QMetaObject>
#include <string>

namespace cirrovane {

SnapshotViewModel::SnapshotViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, const TimeText& timeText,
                                     QObject* parent)
    : QObject(parent),
      dashboard_(dashboard),
      updates_(updates),
      timeText_(timeText),
      report_(dashboard.publishedReport().value()),
      lastFailed_(dashboard.lastFailedSnapshot()),
      isScanning_(dashboard.isScanning()),
      exportNote_(toDisplay(dashboard.exportNote().value_or(""))) {
  subscriptions_.push_back(dashboard_.publishedReport().observe([this](const Shared<SyncHealthReport>& report) {
    report_ = report;
    emit reportChanged();
  }));
  subscriptions_.push_back(
      dashboard_.historyStore().publishedSnapshots().observe([this](const std::vector<ScanSnapshot>& snapshots) {
        lastFailed_ = lastSnapshot(snapshots, false);
        emit historyChanged();
      }));
  subscriptions_.push_back(dashboard_.publishedIsScanning().observe([this](bool isScanning) {
    isScanning_ = isScanning;
    emit isScanningChanged();
  }));
  subscriptions_.push_back(dashboard_.publishedExportNote().observe([this](const std::optional<std::string>& note) {
    exportNote_ = toDisplay(note.value_or(""));
    emit exportNoteChanged();
  }));
}

QString SnapshotViewModel::state() const {
  return toQString(rawValue(report_->status));
}

QString SnapshotViewModel::statusLabel() const {
  return toQString(healthWords(report_->status).label);
}

QString SnapshotViewModel::menuBarSymbol() const {
  return toQString(healthWords(report_->status).symbol);
}

QString SnapshotViewModel::score() const {
  return QString::number(report_->score);
}

QString SnapshotViewModel::verdict() const {
  return report_->safeToClose ? QStringLiteral("Safe to close now") : QStringLiteral("Do not close yet");
}

QString SnapshotViewModel::scores() const {
  return QStringLiteral("Upload Trust %1 · Local %2").arg(report_->score).arg(report_->localAvailabilityScore);
}

QString SnapshotViewModel::toolTip() const {
  return QStringLiteral("Cirrovane: %1. %2.").arg(statusLabel(), verdict());
}

QString SnapshotViewModel::topBlocker() const {
  return hasTopBlocker() ? blockerLine(report_->blockers.front()) : QString();
}

QString SnapshotViewModel::lastFailedTime() const {
  return lastFailed_ ? toQString(timeText_.timeOfDay(lastFailed_->timestamp)) : QString();
}

QString SnapshotViewModel::lastFailedDate() const {
  return lastFailed_ ? toQString(timeText_.dayAndTime(lastFailed_->timestamp)) : QString();
}

QString SnapshotViewModel::lastFailedReason() const {
  return lastFailed_ ? topReasonTitle(*lastFailed_) : QString();
}

QString SnapshotViewModel::buildLabel() const {
  return QStringLiteral("Build ") + toQString(updates_.versionLabel());
}

void SnapshotViewModel::appeared() {
  dashboard_.surfaceAppeared();
}

void SnapshotViewModel::rescan() {
  dashboard_.refresh();
}

void SnapshotViewModel::exportProofPacket() {
  // Later, since the dialog would keep waiting whoever has pressed the button for the user.
  QMetaObject::invokeMethod(
      this,
      [this] {
        dashboard_.exportProofPacket();
        emit exportEnded();
      },
      Qt::QueuedConnection);
}

void SnapshotViewModel::checkForUpdates() {
  updates_.checkForUpdates();
}

}  // namespace cirrovane
