#pragma once

#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstdint>
#include <string>

namespace cirrovane {

/// A signal in words. A field without anything to say is empty.
struct SignalRow {
  Q_GADGET
  Q_PROPERTY(QString symbol MEMBER symbol)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(QString reason MEMBER reason)
  Q_PROPERTY(QString folder MEMBER folder)
  Q_PROPERTY(QString explanation MEMBER explanation)
  Q_PROPERTY(QString date MEMBER date)
  Q_PROPERTY(QString path MEMBER path)
  Q_PROPERTY(bool hasReview MEMBER hasReview)

 public:
  /// Stays when the title changes, so that the row stays too.
  QString key;
  QString symbol;
  /// Of the symbol.
  Tone tone = Tone::Plain;
  QString title;
  QString text;
  QString reason = {};
  QString folder = {};
  QString explanation = {};
  /// The day of a scan.
  QString date = {};
  /// The path of a file that the file manager can show.
  QString path = {};
  /// Whether there is a sheet that goes through it.
  bool hasReview = false;

  friend bool operator==(const SignalRow&, const SignalRow&) = default;
  friend const QString& keyOf(const SignalRow& row) { return row.key; }
};

/// Signals that are easily missed: how steady the verdict was, what the scans do not cover, the latest scan of either
/// verdict.
class AwarenessViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString recentStability READ recentStability NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)

 public:
  using PageViewModel::PageViewModel;

  /// "66% safe in last 3 scans".
  const QString& recentStability() const { return recentStability_; }
  ListModel<SignalRow>* rows() { return &rows_; }

  /// Shows the file that stood first in the way at the last failed scan.
  Q_INVOKABLE void revealLastFailed();

 protected:
  void begin() override;
  void update() override;

 private:
  SignalRow coverageRow() const;
  SignalRow cloudOnlyRow() const;
  SignalRow failedRow() const;
  SignalRow safeRow() const;
  SignalRow unvouchedRow() const;

  std::int64_t coverageGapCount_ = 0;
  Subscription reportSubscription_;
  bool isKnown_ = false;
  QString recentStability_;
  ListModel<SignalRow> rows_;
};

}  // namespace cirrovane
