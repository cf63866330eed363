#pragma once

#include <QAbstractItemModel>
#include <QSignalSpy>

namespace cirrovane::test {

/// Counts what a list tells of changes to its rows, from now on.
class RowSignals {
 public:
  explicit RowSignals(const QAbstractItemModel& list)
      : changes_(&list, &QAbstractItemModel::dataChanged),
        insertions_(&list, &QAbstractItemModel::rowsInserted),
        removals_(&list, &QAbstractItemModel::rowsRemoved),
        moves_(&list, &QAbstractItemModel::rowsMoved),
        resets_(&list, &QAbstractItemModel::modelReset) {}

  qsizetype changes() const { return changes_.count(); }
  qsizetype insertions() const { return insertions_.count(); }
  qsizetype total() const {
    return changes_.count() + insertions_.count() + removals_.count() + moves_.count() + resets_.count();
  }

  /// The row of the only change.
  int changedRow() const { return changes_.at(0).at(0).toModelIndex().row(); }

 private:
  QSignalSpy changes_;
  QSignalSpy insertions_;
  QSignalSpy removals_;
  QSignalSpy moves_;
  QSignalSpy resets_;
};

}  // namespace cirrovane::test
