#pragma once

#include "coordinator/UploadStanding.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <string>
#include <vector>

namespace cirrovane {

/// A stuck file in words.
struct StuckUploadRow {
  Q_GADGET
  Q_PROPERTY(QString path MEMBER path)
  Q_PROPERTY(QString size MEMBER size)
  Q_PROPERTY(QString waiting MEMBER waiting)
  Q_PROPERTY(QString since MEMBER since)
  Q_PROPERTY(QString error MEMBER error)
  Q_PROPERTY(QString nextStep MEMBER nextStep)

 public:
  QString path;
  /// "9.5 KB".
  QString size;
  /// "Waiting for 3 h 5 min".
  QString waiting;
  /// The day and the time at which it was first seen to wait.
  QString since;
  /// The system's own words; empty where it says nothing.
  QString error;
  QString nextStep;
  /// The path as it is on the disk.
  std::string filePath;

  friend bool operator==(const StuckUploadRow&, const StuckUploadRow&) = default;
  friend const QString& keyOf(const StuckUploadRow& row) { return row.path; }
};

/// Something about the machine that keeps files from leaving.
struct HindranceRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)

 public:
  QString title;
  QString detail;

  friend bool operator==(const HindranceRow&, const HindranceRow&) = default;
  friend const QString& keyOf(const HindranceRow& row) { return row.title; }
};

/// What is left to upload, and which of it is stuck and why.
class UploadsViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString amount READ amount NOTIFY changed)
  Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY changed)
  Q_PROPERTY(bool isMoving READ isMoving NOTIFY changed)
  Q_PROPERTY(double share READ share NOTIFY changed)
  Q_PROPERTY(QString shareText READ shareText NOTIFY changed)
  Q_PROPERTY(QString stuckText READ stuckText NOTIFY changed)
  Q_PROPERTY(QString unlistedText READ unlistedText NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* stuck READ stuck CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* hindrances READ hindrances CONSTANT)

 public:
  using PageViewModel::PageViewModel;

  /// "Left to upload: 12 files, 1.2 GB"; empty while nothing is left.
  const QString& amount() const { return amount_; }
  /// "about 6 to 9 min", "nothing has moved for 12 min".
  const QString& timeLeft() const { return timeLeft_; }
  bool isMoving() const { return isMoving_; }
  /// From 0 to 1, of what there was when it began.
  double share() const { return share_; }
  /// "34%".
  QString shareText() const;
  /// "2 files are stuck"; empty where none is.
  const QString& stuckText() const { return stuckText_; }
  /// "7 more have waited less long."; empty where the list has them all.
  const QString& unlistedText() const { return unlistedText_; }
  /// Those that have waited longest, first.
  ListModel<StuckUploadRow>* stuck() { return &stuck_; }
  /// Of the latest diagnostics.
  ListModel<HindranceRow>* hindrances() { return &hindrances_; }

  /// Shows a stuck file in the file manager.
  Q_INVOKABLE void reveal(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  void updateStuck(const UploadStanding& standing, Time now);

  QString amount_;
  QString timeLeft_;
  bool isMoving_ = false;
  double share_ = 0;
  QString stuckText_;
  QString unlistedText_;
  ListModel<StuckUploadRow> stuck_;
  ListModel<HindranceRow> hindrances_;
};

}  // namespace cirrovane
