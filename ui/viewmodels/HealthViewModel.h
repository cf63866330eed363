#pragma once

#include "core/SyncHealthReport.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A counter of the report.
struct MetricRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString value MEMBER value)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)

 public:
  QString title;
  QString value;
  Tone tone = Tone::Plain;

  friend bool operator==(const MetricRow&, const MetricRow&) = default;
  friend const QString& keyOf(const MetricRow& row) { return row.title; }
};

/// The state, the verdict, the scores and the counters of the latest report.
class HealthViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::Tones::Tone tone READ tone NOTIFY changed)
  Q_PROPERTY(QString stateLabel READ stateLabel NOTIFY changed)
  Q_PROPERTY(QString stateSymbol READ stateSymbol NOTIFY changed)
  Q_PROPERTY(QString verdict READ verdict NOTIFY changed)
  Q_PROPERTY(cirrovane::Tones::Tone verdictTone READ verdictTone NOTIFY changed)
  Q_PROPERTY(QString verdictNote READ verdictNote NOTIFY changed)
  Q_PROPERTY(QString coverageNote READ coverageNote NOTIFY changed)
  Q_PROPERTY(QString liveness READ liveness NOTIFY changed)
  Q_PROPERTY(int uploadTrust READ uploadTrust NOTIFY changed)
  Q_PROPERTY(int localAvailability READ localAvailability NOTIFY changed)
  Q_PROPERTY(cirrovane::Tones::Tone localTone READ localTone NOTIFY changed)
  Q_PROPERTY(QString updatedText READ updatedText NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* metrics READ metrics CONSTANT)

 public:
  using PageViewModel::PageViewModel;

  /// Of the sign; neutral before the first scan.
  Tone tone() const;
  /// "Green Safe", "Yellow Needs Attention" or "Red Unsafe"; "Scanning" before the first scan.
  QString stateLabel() const;
  QString stateSymbol() const;
  /// "YES" or "NO".
  QString verdict() const;
  /// Neutral before the first scan, and for a YES that is stale.
  Tone verdictTone() const;
  /// Since when a YES is stale, and why; empty while it holds, and for a NO.
  QString verdictNote() const;
  /// For how many items a YES does not vouch; empty for a NO, and where there are none.
  QString coverageNote() const;
  /// "Live", "Catching up" or "Not live", and why; empty before the first scan.
  QString liveness() const;
  /// 0 to 100.
  int uploadTrust() const;
  /// 0 to 100.
  int localAvailability() const;
  /// Of Local Availability. Files that are only in the cloud are no danger.
  Tone localTone() const;
  /// "Updated 6:21:07 PM"; "Not scanned yet" before the first scan.
  QString updatedText() const;
  ListModel<MetricRow>* metrics() { return &metrics_; }

 protected:
  void begin() override;
  void update() override;

 private:
  void showMetrics();

  // A copy without the blockers, since a page that holds an old report would have to release it.
  SyncHealthReport summary_ = SyncHealthReport::empty();
  ShownVerdict verdict_;
  Liveness liveness_;
  ListModel<MetricRow> metrics_;
};

}  // namespace cirrovane
