#pragma once

#include "ui/items/ScoreTimeline.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The history of scans, and the export of all that is known.
class TimelineViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(cirrovane::ScoreHistory snapshots READ snapshots NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* rows READ rows CONSTANT)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)
  Q_PROPERTY(QString exportNote READ exportNote NOTIFY changed)

 public:
  explicit TimelineViewModel(QObject* parent = nullptr);

  bool isEmpty() const { return snapshots_.scores().empty(); }
  /// For the chart.
  const ScoreHistory& snapshots() const { return snapshots_; }
  /// The newest scans, newest first, each with its "time" and whole "date", its "score" and "local" score, its
  /// "blockers" in number, the "verdict" in a word or the reason against it, and its health "state".
  RowListModel* rows() { return &rows_; }
  /// Why the latest scan will not be in the history after the application has ended; empty when it will.
  const QString& saveFailure() const { return saveFailure_; }
  /// How the latest export ended; empty before the first.
  const QString& exportNote() const { return exportNote_; }

  /// Lets the user name a file for a proof packet.
  Q_INVOKABLE void exportProofPacket();

 protected:
  void begin() override;
  void update() override;

 private:
  RowListModel::Row rowOf(const ScanSnapshot& snapshot) const;

  ScoreHistory snapshots_;
  RowListModel rows_;
  QString saveFailure_;
  QString exportNote_;
};

}  // namespace cirrovane
