#pragma once

#include "ui/viewmodels/RowListModel.h"

#include <QSignalSpy>

namespace cirrovane::test {

/// Counts what a list tells of changes to its rows, from now on.
class RowSignals {
 public:
  explicit RowSignals(const RowListModel& list)
      : changes_(&list, &RowListModel::dataChanged),
        insertions_(&list, &RowListModel::rowsInserted),
        removals_(&list, &RowListModel::rowsRemoved),
        moves_(&list, &RowListModel::rowsMoved),
        resets_(&list, &RowListModel::modelReset) {}

  qsizetype changes() const { return changes_.count(); }
  qsizetype insertions() const { return insertions_.count(); }
  qsizetype total() const {
    return changes_.count() + insertions_.count() + removals_.count() + moves_.count() + resets_.count();
  }

 private:
  QSignalSpy changes_;
  QSignalSpy insertions_;
  QSignalSpy removals_;
  QSignalSpy moves_;
  QSignalSpy resets_;
};

}  // namespace cirrovane::test
