#pragma once

#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>
#include <string>

namespace cirrovane {

/// A criterion of the checklist in words.
struct CriterionRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QString symbol MEMBER symbol)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)
  Q_PROPERTY(QString state MEMBER state)

 public:
  QString title;
  QString detail;
  QString symbol;
  Tone tone = Tone::Plain;
  /// "Passed"
  QString state;

  friend bool operator==(const CriterionRow&, const CriterionRow&) = default;
  friend const QString& keyOf(const CriterionRow& row) { return row.title; }
};

/// The verdict, the checklist behind it, and the most serious blocker.
class SafetyExplainerViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString verdict READ verdict NOTIFY changed)
  Q_PROPERTY(cirrovane::Tones::Tone verdictTone READ verdictTone NOTIFY changed)
  Q_PROPERTY(QString verdictNote READ verdictNote NOTIFY changed)
  Q_PROPERTY(QString coverageNote READ coverageNote NOTIFY changed)
  Q_PROPERTY(QString lastEvaluation READ lastEvaluation NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* criteria READ criteria CONSTANT)
  Q_PROPERTY(bool hasTopBlocker READ hasTopBlocker NOTIFY changed)
  Q_PROPERTY(QString topBlockerReason READ topBlockerReason NOTIFY changed)
  Q_PROPERTY(QString topBlockerPath READ topBlockerPath NOTIFY changed)
  Q_PROPERTY(QString topBlockerDetails READ topBlockerDetails NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  /// "YES" or "NO".
  QString verdict() const { return verdict_.safeToClose ? QStringLiteral("YES") : QStringLiteral("NO"); }
  /// Neutral before the first scan, and for a YES that is stale.
  Tone verdictTone() const;
  /// Since when a YES is stale, and why; empty while it holds, and for a NO.
  QString verdictNote() const;
  /// For how many items a YES does not vouch; empty for a NO, and where there are none.
  QString coverageNote() const;
  /// With its time of day; "not yet" before the first scan.
  QString lastEvaluation() const { return lastEvaluation_; }
  ListModel<CriterionRow>* criteria() { return &criteria_; }

  /// Whether there is a blocker.
  bool hasTopBlocker() const { return !topBlockerReason_.isEmpty(); }
  QString topBlockerReason() const { return topBlockerReason_; }
  QString topBlockerPath() const;
  QString topBlockerDetails() const { return topBlockerDetails_; }

  /// Shows the most serious blocker's file in the file manager.
  Q_INVOKABLE void revealTopBlocker();

 protected:
  void begin() override;
  void update() override;

 private:
  void showCriteria();

  ShownVerdict verdict_;
  QString lastEvaluation_;
  ListModel<CriterionRow> criteria_;
  QString topBlockerReason_;
  QString topBlockerDetails_;
  /// The path as it is on the disk.
  std::string topBlockerPath_;
};

}  // namespace cirrovane
