#include "ui/viewmodels/RowListModel.h"

#include <cstddef>
#include <utility>

namespace cirrovane {

RowListModel::RowListModel(QByteArrayList roles, QObject* parent)
    : QAbstractListModel(parent), roles_(std::move(roles)) {}

void RowListModel::setRows(std::vector<Row> rows) {
  const std::size_t countBefore = rows_.size();
  ListDifference(*this, rows_).become(std::move(rows));
  if (rows_.size() != countBefore) {
    emit countChanged();
  }
}

int RowListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rowCountNow();
}

QVariant RowListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const QVariantList& values = rows_[static_cast<std::size_t>(index.row())].values;
  const int column = role - Qt::UserRole - 1;
  return column >= 0 && column < values.size() ? values[column] : QVariant();
}

QHash<int, QByteArray> RowListModel::roleNames() const {
  QHash<int, QByteArray> names;
  for (int column = 0; column < roles_.size(); ++column) {
    names.insert(Qt::UserRole + 1 + column, roles_[column]);
  }
  return names;
}

}  // namespace cirrovane
