#pragma once

#include "core/CoverageReport.h"
#include "stores/Acknowledgement.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <chrono>
#include <optional>

namespace cirrovane {

/// A gap, a folder that was not looked at, or something that is acknowledged, in words. The first one of its kind has
/// the kind's heading and note above it. A kind whose gaps are all counted only has a row without a path.
struct CoverageRow {
  Q_GADGET
  Q_PROPERTY(QString heading MEMBER heading)
  Q_PROPERTY(QString note MEMBER note)
  Q_PROPERTY(QString path MEMBER path)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QString more MEMBER more)
  Q_PROPERTY(bool canReveal MEMBER canReveal)
  Q_PROPERTY(bool canAcknowledge MEMBER canAcknowledge)
  Q_PROPERTY(bool canForget MEMBER canForget)

 public:
  QString key;
  /// "Sync Paused (2)"
  QString heading = {};
  /// Why the kind matters and what to do about it.
  QString note = {};
  QString path = {};
  /// The folder and the rule of a gap; since and until when something is acknowledged.
  QString detail = {};
  /// How many of the kind are counted only, below its last row.
  QString more = {};
  bool canReveal = false;
  bool canAcknowledge = false;
  bool canForget = false;
  /// Which gap, folder or acknowledgement it is about, as it is on the disk.
  CoverageGap gap = {};

  friend bool operator==(const CoverageRow&, const CoverageRow&) = default;
  friend const QString& keyOf(const CoverageRow& row) { return row.key; }
};

/// What the verdict does not vouch for, item by item, and what the user says of it.
class CoverageViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString summary READ summary NOTIFY changed)
  Q_PROPERTY(QString lookedAt READ lookedAt NOTIFY changed)
  Q_PROPERTY(bool isLooking READ isLooking NOTIFY changed)
  Q_PROPERTY(bool isChanging READ isChanging NOTIFY changed)
  Q_PROPERTY(QString failure READ failure NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)

 public:
  using PageViewModel::PageViewModel;

  QString summary() const { return summary_; }
  /// When the folders were looked at, and at what besides what a scan sees; empty before the first look.
  QString lookedAt() const { return lookedAt_; }
  bool isLooking() const;
  /// Whether a change is on its way to the disk.
  bool isChanging() const;
  /// Why the latest change came to nothing; empty when it was made.
  QString failure() const;
  /// Gaps by their kinds, then folders that were not looked at, then what is acknowledged.
  ListModel<CoverageRow>* rows() { return &rows_; }

  /// To be called when the user opens it.
  Q_INVOKABLE void opened();
  Q_INVOKABLE void lookAgain();
  /// Shows a row's item in the file manager.
  Q_INVOKABLE void reveal(int row);
  /// Says that the user knows of a row's gap.
  Q_INVOKABLE void acknowledgeForAWeek(int row);
  Q_INVOKABLE void acknowledgeForGood(int row);
  /// Takes back what a row says is acknowledged.
  Q_INVOKABLE void forget(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  CoverageReview& review() const;
  void acknowledge(int row, std::optional<std::chrono::days> time);
  CoverageRow acknowledgedRow(const Acknowledgement& one) const;

  QString summary_;
  QString lookedAt_;
  ListModel<CoverageRow> rows_;
};

}  // namespace cirrovane
