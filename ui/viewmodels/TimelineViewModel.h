#pragma once

#include "ui/items/ScoreTimeline.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>
#include <optional>
#include <string>

namespace cirrovane {

/// A scan in words.
struct ScanRow {
  Q_GADGET
  Q_PROPERTY(QString time MEMBER time)
  Q_PROPERTY(QString date MEMBER date)
  Q_PROPERTY(QString score MEMBER score)
  Q_PROPERTY(QString local MEMBER local)
  Q_PROPERTY(QString blockers MEMBER blockers)
  Q_PROPERTY(QString verdict MEMBER verdict)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)

 public:
  QString time;
  /// The day with the time.
  QString date;
  QString score;
  QString local;
  QString blockers;
  /// "Safe", "Unsafe", or the reason against it.
  QString verdict;
  /// Of the health state.
  Tone tone = Tone::Plain;
  QString key = {};

  friend bool operator==(const ScanRow&, const ScanRow&) = default;
  friend const QString& keyOf(const ScanRow& row) { return row.key; }
};

/// The history of scans, and how an export of all that is known ended.
class TimelineViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(cirrovane::ScoreHistory snapshots READ snapshots NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)
  Q_PROPERTY(QString exportNote READ exportNote NOTIFY changed)
  Q_PROPERTY(bool canRevealExport READ canRevealExport NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  bool isEmpty() const { return snapshots_.scores().empty(); }
  /// For the chart.
  const ScoreHistory& snapshots() const { return snapshots_; }
  /// The newest scans, newest first.
  ListModel<ScanRow>* rows() { return &rows_; }
  /// Why the latest scan is not on the disk; empty when it is.
  const QString& saveFailure() const { return saveFailure_; }
  /// How the latest export ended; empty before the first, and some time after one that succeeded.
  const QString& exportNote() const { return exportNote_; }

  /// Whether the note is about a file.
  bool canRevealExport() const { return exportedFile_.has_value(); }

  /// A scan on one line, by its number from the oldest, which is 0: when, the scores, the blockers and the first of
  /// them. Empty for a number beyond them.
  Q_INVOKABLE QString scanText(int number) const;

  /// Shows that file in the file manager.
  Q_INVOKABLE void revealExport();

 protected:
  void begin() override;
  void update() override;

 private:
  ScanRow rowOf(const ScanSnapshot& snapshot) const;

  ScoreHistory snapshots_;
  ListModel<ScanRow> rows_;
  QString saveFailure_;
  QString exportNote_;
  std::optional<std::string> exportedFile_;
};

}  // namespace cirrovane
