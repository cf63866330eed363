#include "ui/viewmodels/SnapshotViewModel.h"

#include "ui/viewmodels/Text.h"

#include <string_view>

namespace cirrovane {
namespace {

struct StateWords {
  std::string_view label;
  std::string_view symbol;
};

StateWords wordsOf(HealthState state) {
  switch (state) {
    case HealthState::safe:
      return {"Green Safe", "checkmark.seal.fill"};
    case HealthState::warning:
      return {"Yellow Needs Attention", "exclamationmark.triangle.fill"};
    case HealthState::danger:
      break;
  }
  return {"Red Unsafe", "xmark.octagon.fill"};
}

}  // namespace

SnapshotViewModel::SnapshotViewModel(DashboardViewModel& dashboard, QObject* parent)
    : QObject(parent), dashboard_(dashboard), report_(dashboard.publishedReport().value()) {
  subscription_ = dashboard_.publishedReport().observe([this](const Shared<SyncHealthReport>& report) {
    report_ = report;
    emit reportChanged();
  });
}

QString SnapshotViewModel::state() const {
  return toQString(rawValue(report_->status));
}

QString SnapshotViewModel::statusLabel() const {
  return toQString(wordsOf(report_->status).label);
}

QString SnapshotViewModel::menuBarSymbol() const {
  return toQString(wordsOf(report_->status).symbol);
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

void SnapshotViewModel::appeared() {
  dashboard_.surfaceAppeared();
}

}  // namespace cirrovane
