#pragma once

#include "ui/viewmodels/RowListModel.h"

#include <QList>
#include <QStringList>
#include <algorithm>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Each row with the values of its roles in their order, a bar between them.
inline std::vector<std::string> texts(const RowListModel& list) {
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

}  // namespace cirrovane::test
