#include "ui/viewmodels/ScanStatus.h"

#include "base/Path.h"
#include "ui/viewmodels/CountText.h"
#include "ui/viewmodels/Text.h"

#include <algorithm>
#include <string>

namespace cirrovane {
namespace {

constexpr int kUntoldSteps = 1;

}  // namespace

ScanStatus::ScanStatus(const DashboardViewModel& dashboard, const ScanProgress& progress, Timer& timer, QObject* parent)
    : QObject(parent), dashboard_(dashboard), progress_(progress), timer_(timer) {
  subscriptions_.push_back(dashboard.publishedIsScanning().afterChange([this](bool isScanning) {
    if (isScanning) {
      begin();
    } else {
      end();
    }
  }));
  // The files are all read then, and the machine is looked at.
  subscriptions_.push_back(dashboard.publishedReport().afterChange([this](const Shared<SyncHealthReport>&) { end(); }));
}

void ScanStatus::begin() {
  steps_ = 0;
  filesBefore_ = progress_.files();
  const bool hasScanned = dashboard_.verdict().standing != VerdictStanding::unknown;
  filesLastTime_ = hasScanned ? dashboard_.report().metrics.totalFiles : 0;
  timer_.start(kStep, [this] { step(); });
}

void ScanStatus::end() {
  timer_.stop();
  tell({}, -1);
}

void ScanStatus::step() {
  const std::string folder = progress_.folder();
  if (steps_++ < kUntoldSteps || folder.empty()) {
    return;
  }
  const std::int64_t files = progress_.files() - filesBefore_;
  const qreal share =
      filesLastTime_ > 0 ? std::min(1.0, static_cast<qreal>(files) / static_cast<qreal>(filesLastTime_)) : -1;
  tell(QStringLiteral("Scanning %1: %2").arg(toDisplay(lastPathComponent(folder)), countText(files, "file")), share);
}

void ScanStatus::tell(const QString& text, qreal share) {
  if (text != text_ || share < share_ || share_ < share) {
    text_ = text;
    share_ = share;
    emit changed();
  }
}

}  // namespace cirrovane
