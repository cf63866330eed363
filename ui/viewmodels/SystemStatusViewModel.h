#pragma once

#include "diagnostics/SystemStatusSnapshot.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A value under its name.
struct ValueRow {
  Q_GADGET
  Q_PROPERTY(QString label MEMBER label)
  Q_PROPERTY(QString value MEMBER value)

 public:
  QString label;
  QString value;

  friend bool operator==(const ValueRow&, const ValueRow&) = default;
  friend const QString& keyOf(const ValueRow& row) { return row.label; }
};

/// The latest status sample in words, a list of labels and values for each card.
class SystemStatusViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString capturedAt READ capturedAt NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* cpu READ cpu CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* memory READ memory CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* storage READ storage CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* power READ power CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* network READ network CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* live READ live CONSTANT)
  Q_PROPERTY(bool hasMemoryGauge READ hasMemoryGauge NOTIFY changed)
  Q_PROPERTY(double memoryUsageRatio READ memoryUsageRatio NOTIFY changed)
  Q_PROPERTY(QString memoryUsageText READ memoryUsageText NOTIFY changed)
  Q_PROPERTY(cirrovane::Tones::Tone memoryUsageTone READ memoryUsageTone NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  /// Time of day; "Not yet" before the first sample.
  QString capturedAt() const;
  ListModel<ValueRow>* cpu() { return &cpu_; }
  ListModel<ValueRow>* memory() { return &memory_; }
  ListModel<ValueRow>* storage() { return &storage_; }
  ListModel<ValueRow>* power() { return &power_; }
  ListModel<ValueRow>* network() { return &network_; }
  /// Says how the verdict follows the files.
  ListModel<ValueRow>* live() { return &live_; }

  /// Whether it is known how full the memory is.
  bool hasMemoryGauge() const;
  /// 0 to 1, and more when the estimate exceeds the memory; 0 when unknown.
  double memoryUsageRatio() const;
  /// "72%".
  QString memoryUsageText() const;
  Tone memoryUsageTone() const;

 protected:
  void begin() override;
  void update() override;

 private:
  void showLive();

  SystemStatusSnapshot status_ = SystemStatusSnapshot::empty();
  ListModel<ValueRow> cpu_;
  ListModel<ValueRow> memory_;
  ListModel<ValueRow> storage_;
  ListModel<ValueRow> power_;
  ListModel<ValueRow> network_;
  ListModel<ValueRow> live_;
};

}  // namespace cirrovane
