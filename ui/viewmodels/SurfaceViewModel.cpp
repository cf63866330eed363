#include "ui/viewmodels/SurfaceViewModel.h"

#include "ui/viewmodels/Text.h"

namespace cirrovane {

SurfaceViewModel::SurfaceViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, QObject* parent)
    : QObject(parent), dashboard_(dashboard), updates_(updates) {
  follow(dashboard_.publishedIsScanning(), [this] { emit isScanningChanged(); });
}

QString SurfaceViewModel::buildLabel() const {
  return QStringLiteral("Build ") + toQString(updates_.versionLabel());
}

void SurfaceViewModel::appeared() {
  dashboard_.surfaceAppeared();
}

void SurfaceViewModel::rescan() {
  dashboard_.refresh();
}

void SurfaceViewModel::checkForUpdates() {
  updates_.checkForUpdates();
}

}  // namespace cirrovane
