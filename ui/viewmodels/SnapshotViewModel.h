#pragma once

#include "coordinator/CoverageReview.h"
#include "platform/TimeText.h"
#include "ui/viewmodels/SurfaceViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>
#include <optional>

namespace cirrovane {

/// The verdict at a glance and the most used actions, for the menu-bar icon and its panel.
class SnapshotViewModel : public cirrovane::SurfaceViewModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(cirrovane::Tones::Tone tone READ tone NOTIFY reportChanged)
  Q_PROPERTY(QString statusLabel READ statusLabel NOTIFY reportChanged)
  Q_PROPERTY(QString menuBarSymbol READ menuBarSymbol NOTIFY reportChanged)
  Q_PROPERTY(QString score READ score NOTIFY reportChanged)
  Q_PROPERTY(QString verdict READ verdict NOTIFY reportChanged)
  Q_PROPERTY(QString verdictNote READ verdictNote NOTIFY reportChanged)
  Q_PROPERTY(QString liveness READ liveness NOTIFY reportChanged)
  Q_PROPERTY(QString unvouched READ unvouched NOTIFY coverageChanged)
  Q_PROPERTY(bool isYesMarked READ isYesMarked NOTIFY coverageChanged)
  Q_PROPERTY(QString scores READ scores NOTIFY reportChanged)
  Q_PROPERTY(QString uploads READ uploads NOTIFY uploadsChanged)
  Q_PROPERTY(bool hasTopBlocker READ hasTopBlocker NOTIFY reportChanged)
  Q_PROPERTY(QString topBlocker READ topBlocker NOTIFY reportChanged)
  Q_PROPERTY(bool hasLastFailed READ hasLastFailed NOTIFY historyChanged)
  Q_PROPERTY(QString lastFailedTime READ lastFailedTime NOTIFY historyChanged)
  Q_PROPERTY(QString lastFailedDate READ lastFailedDate NOTIFY historyChanged)
  Q_PROPERTY(QString lastFailedReason READ lastFailedReason NOTIFY historyChanged)
  Q_PROPERTY(QString exportNote READ exportNote NOTIFY exportNoteChanged)
  Q_PROPERTY(bool canRevealExport READ canRevealExport NOTIFY exportNoteChanged)

 public:
  /// The arguments outlive this.
  SnapshotViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, const CoverageReview& coverage,
                    const TimeText& timeText, QObject* parent = nullptr);

  /// Of the sign; neutral before the first scan.
  Tone tone() const;
  /// "Green Safe", "Yellow Needs Attention" or "Red Unsafe"; "Scanning" before the first scan.
  QString statusLabel() const;
  QString menuBarSymbol() const;
  QString score() const;
  QString verdict() const;
  /// Why a YES is stale; empty while it holds, and for a NO.
  QString verdictNote() const;
  /// "Live", "Catching up" or "Not live", and why; empty before the first scan.
  QString liveness() const;
  /// "Upload Trust 92 · Local 84".
  QString scores() const;
  /// For how many items the verdict does not vouch; empty where there are none, or nobody has looked yet.
  QString unvouched() const;
  /// Whether there is a YES that does not vouch for all.
  bool isYesMarked() const;
  /// Asks for the sheet that goes through them: coverageRequested() comes.
  Q_INVOKABLE void reviewCoverage() { emit coverageRequested(); }

  /// What is left to upload, and how it goes; empty while nothing is left.
  QString uploads() const;
  /// The icon's tooltip: state, verdict and what is left to upload, in words.
  QString toolTip() const;

  bool hasTopBlocker() const { return !dashboard().report().blockers.empty(); }
  /// "Upload Stalled: invoice.pdf"; empty without a blocker.
  QString topBlocker() const;

  bool hasLastFailed() const { return lastFailed_.has_value(); }
  /// Time of day; with the day unless that is today. This and the next two are empty when no scan failed.
  QString lastFailedTime() const;
  QString lastFailedDate() const;
  /// It is empty too when it is unknown.
  QString lastFailedReason() const;

  /// How the latest export ended; empty before the first, and some time after one that succeeded.
  QString exportNote() const;
  /// Whether the note is about a file.
  bool canRevealExport() const;
  /// Shows that file in the file manager.
  Q_INVOKABLE void revealExport();

 signals:
  void reportChanged();
  void uploadsChanged();
  void historyChanged();
  void coverageChanged();
  void coverageRequested();
  void exportNoteChanged();

 private:
  const CoverageReview& coverage_;
  const TimeText& timeText_;
  /// Found once a change, since the history may be long.
  std::optional<ScanSnapshot> lastFailed_;
};

}  // namespace cirrovane
