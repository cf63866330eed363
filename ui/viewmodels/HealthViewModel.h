#pragma once

#include "core/SyncHealthReport.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The state, the verdict, the scores and the counters of the latest report.
class HealthViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString state READ state NOTIFY changed)
  Q_PROPERTY(QString stateLabel READ stateLabel NOTIFY changed)
  Q_PROPERTY(QString stateSymbol READ stateSymbol NOTIFY changed)
  Q_PROPERTY(QString verdict READ verdict NOTIFY changed)
  Q_PROPERTY(QString verdictState READ verdictState NOTIFY changed)
  Q_PROPERTY(QString verdictNote READ verdictNote NOTIFY changed)
  Q_PROPERTY(QString liveness READ liveness NOTIFY changed)
  Q_PROPERTY(int uploadTrust READ uploadTrust NOTIFY changed)
  Q_PROPERTY(int localAvailability READ localAvailability NOTIFY changed)
  Q_PROPERTY(QString localState READ localState NOTIFY changed)
  Q_PROPERTY(QString updatedText READ updatedText NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* metrics READ metrics CONSTANT)

 public:
  explicit HealthViewModel(QObject* parent = nullptr);

  /// The state that the sign has, by its name: "safe", "warning" or "danger"; empty before the first scan.
  QString state() const;
  /// "Green Safe", "Yellow Needs Attention" or "Red Unsafe"; "Scanning" before the first scan.
  QString stateLabel() const;
  QString stateSymbol() const;
  /// "YES" or "NO".
  QString verdict() const;
  /// The state whose colour the verdict has; empty before the first scan, and for a YES that is stale.
  QString verdictState() const;
  /// Since when, and why, nobody vouches for a YES any more; empty while it holds, and for a NO.
  QString verdictNote() const;
  /// "Live", "Catching up" or "Not live", and why; empty before the first scan.
  QString liveness() const;
  /// 0 to 100.
  int uploadTrust() const;
  /// 0 to 100.
  int localAvailability() const;
  /// The state whose colours Local Availability has. Files that are only in the cloud are no danger.
  QString localState() const;
  /// "Updated 6:21:07 PM"; "Not scanned yet" before the first scan.
  QString updatedText() const;
  /// Rows of a "title", a "value" and the "state" whose colour it has: "warning", "danger", or empty for none.
  RowListModel* metrics() { return &metrics_; }

 protected:
  void begin() override;
  void update() override;

 private:
  void showMetrics();

  // Of the report without its blockers: a page that held on to an old report would have to release it.
  SyncHealthReport summary_ = SyncHealthReport::empty();
  ShownVerdict verdict_;
  Liveness liveness_;
  RowListModel metrics_;
};

}  // namespace cirrovane
