#pragma once

#include <QAbstractItemModel>
#include <QList>
#include <QObject>
#include <QStringList>
#include <algorithm>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Each row with the values of its roles in their order, a bar between them.
inline std::vector<std::string> texts(const QAbstractItemModel& list) {
  std::vector<std::string> rows;
  QList<int> roles = list.roleNames().keys();
  std::sort(roles.begin(), roles.end());
  for (int row = 0; row < list.rowCount(); ++row) {
    QStringList values;
    for (const int role : roles) {
      values.append(list.data(list.index(row, 0), role).toString());
    }
    rows.push_back(values.join('|').toStdString());
  }
  return rows;
}

/// Counts every change of a list from now on.
class RowChanges {
 public:
  explicit RowChanges(const QAbstractItemModel& list) {
    const auto note = [this] { ++count_; };
    QObject::connect(&list, &QAbstractItemModel::rowsInserted, &receiver_, note);
    QObject::connect(&list, &QAbstractItemModel::rowsRemoved, &receiver_, note);
    QObject::connect(&list, &QAbstractItemModel::rowsMoved, &receiver_, note);
    QObject::connect(&list, &QAbstractItemModel::dataChanged, &receiver_, note);
    QObject::connect(&list, &QAbstractItemModel::modelReset, &receiver_, note);
  }

  int count() const { return count_; }

 private:
  QObject receiver_;
  int count_ = 0;
};

}  // namespace cirrovane::test
