#include "ui/viewmodels/SnapshotViewModel.h"

#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/SnapshotText.h"
#include "ui/viewmodels/Text.h"

#include <QMetaObject>

namespace cirrovane {

SnapshotViewModel::SnapshotViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, const TimeText& timeText,
                                     QObject* parent)
    : QObject(parent),
      dashboard_(dashboard),
      updates_(updates),
      timeText_(timeText),
      lastFailed_(dashboard.lastFailedSnapshot()) {
  subscriptions_.push_back(dashboard_.publishedReport().afterChange([this](const auto&) { emit reportChanged(); }));
  subscriptions_.push_back(dashboard_.publishedVerdict().afterChange([this](const auto&) { emit reportChanged(); }));
  subscriptions_.push_back(dashboard_.historyStore().publishedSnapshots().afterChange([this](const auto&) {
    lastFailed_ = dashboard_.lastFailedSnapshot();
    emit historyChanged();
  }));
  subscriptions_.push_back(
      dashboard_.publishedIsScanning().afterChange([this](bool /*isScanning*/) { emit isScanningChanged(); }));
  subscriptions_.push_back(
      dashboard_.publishedExportNote().afterChange([this](const auto&) { emit exportNoteChanged(); }));
}

QString SnapshotViewModel::state() const {
  return stateName(dashboard_.verdict().sign());
}

QString SnapshotViewModel::statusLabel() const {
  return toQString(healthWords(dashboard_.verdict().sign()).label);
}

QString SnapshotViewModel::menuBarSymbol() const {
  return toQString(healthWords(dashboard_.verdict().sign()).symbol);
}

QString SnapshotViewModel::score() const {
  return QString::number(dashboard_.report().score);
}

QString SnapshotViewModel::verdict() const {
  const ShownVerdict& verdict = dashboard_.verdict();
  if (verdict.isStale()) {
    return QStringLiteral("Safe to close ") + asOfText(verdict, timeText_);
  }
  return verdict.safeToClose ? QStringLiteral("Safe to close now") : QStringLiteral("Do not close yet");
}

QString SnapshotViewModel::verdictNote() const {
  return staleReason(dashboard_.verdict());
}

QString SnapshotViewModel::scores() const {
  return QStringLiteral("Upload Trust %1 · Local %2")
      .arg(dashboard_.report().score)
      .arg(dashboard_.report().localAvailabilityScore);
}

QString SnapshotViewModel::toolTip() const {
  const QString words = QStringLiteral("Cirrovane: %1. %2.").arg(statusLabel(), verdict());
  const QString note = verdictNote();
  return note.isEmpty() ? words : words + QLatin1Char(' ') + note;
}

QString SnapshotViewModel::topBlocker() const {
  return hasTopBlocker() ? blockerLine(dashboard_.report().blockers.front()) : QString();
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

QString SnapshotViewModel::exportNote() const {
  return toDisplay(dashboard_.exportNote().value_or(""));
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
