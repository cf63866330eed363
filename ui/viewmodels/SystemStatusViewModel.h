#pragma once

#include "diagnostics/SystemStatusSnapshot.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The latest status sample in words, a list of labels and values for each card.
class SystemStatusViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString capturedAt READ capturedAt NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* cpu READ cpu CONSTANT)
  Q_PROPERTY(cirrovane::RowListModel* memory READ memory CONSTANT)
  Q_PROPERTY(cirrovane::RowListModel* storage READ storage CONSTANT)
  Q_PROPERTY(cirrovane::RowListModel* power READ power CONSTANT)
  Q_PROPERTY(cirrovane::RowListModel* network READ network CONSTANT)
  Q_PROPERTY(cirrovane::RowListModel* live READ live CONSTANT)
  Q_PROPERTY(bool hasMemoryGauge READ hasMemoryGauge NOTIFY changed)
  Q_PROPERTY(double memoryUsageRatio READ memoryUsageRatio NOTIFY changed)
  Q_PROPERTY(QString memoryUsageText READ memoryUsageText NOTIFY changed)
  Q_PROPERTY(QString memoryUsageLevel READ memoryUsageLevel NOTIFY changed)

 public:
  explicit SystemStatusViewModel(QObject* parent = nullptr);

  /// Time of day; "Not yet" before the first sample.
  QString capturedAt() const;
  RowListModel* cpu() { return &cpu_; }
  RowListModel* memory() { return &memory_; }
  RowListModel* storage() { return &storage_; }
  RowListModel* power() { return &power_; }
  RowListModel* network() { return &network_; }
  /// How the verdict follows the files.
  RowListModel* live() { return &live_; }

  /// Whether it is known how full the memory is.
  bool hasMemoryGauge() const;
  /// 0 to 1, and more where the estimate goes beyond all there is; 0 when unknown.
  double memoryUsageRatio() const;
  /// "72%".
  QString memoryUsageText() const;
  /// "ok", "warning" or "error".
  QString memoryUsageLevel() const;

 protected:
  void begin() override;
  void update() override;

 private:
  void showLive();

  SystemStatusSnapshot status_ = SystemStatusSnapshot::empty();
  RowListModel cpu_;
  RowListModel memory_;
  RowListModel storage_;
  RowListModel power_;
  RowListModel network_;
  RowListModel live_;
};

}  // namespace cirrovane
