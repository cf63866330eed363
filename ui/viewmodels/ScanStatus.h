#pragma once

#include "base/Published.h"
#include "coordinator/DashboardViewModel.h"
#include "core/ScanProgress.h"
#include "platform/Timer.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <chrono>
#include <cstdint>
#include <vector>

namespace cirrovane {

/// How far the scan under way has come. Says nothing of a scan that ends before anybody wonders.
class ScanStatus : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(qreal share READ share NOTIFY changed)

 public:
  /// A step of what is told; a scan that is over within two of them is not told.
  static constexpr std::chrono::milliseconds kStep{250};

  /// The arguments outlive this; the timer is its own.
  ScanStatus(const DashboardViewModel& dashboard, const ScanProgress& progress, Timer& timer,
             QObject* parent = nullptr);

  /// "Scanning Documents: 12345 files"; empty while there is nothing to tell.
  QString text() const { return text_; }
  /// Of the files that the last scan found, from 0 to 1; negative while that is unknown.
  qreal share() const { return share_; }

 signals:
  void changed();

 private:
  void begin();
  void end();
  void step();
  void tell(const QString& text, qreal share);

  const DashboardViewModel& dashboard_;
  const ScanProgress& progress_;
  Timer& timer_;
  QString text_;
  qreal share_ = -1;
  int steps_ = 0;
  /// Files that earlier scans saw.
  std::int64_t filesBefore_ = 0;
  /// Files that the last scan found; 0 before the first.
  std::int64_t filesLastTime_ = 0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace cirrovane
