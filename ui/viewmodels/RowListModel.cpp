#include "ui/viewmodels/RowListModel.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace cirrovane {
namespace {

void makeKeysUnique(std::vector<RowListModel::Row>& rows) {
  QHash<QString, int> seen;
  for (RowListModel::Row& row : rows) {
    if (const int earlier = seen[row.key]++; earlier > 0) {
      row.key += QLatin1Char('\n') + QString::number(earlier);
    }
  }
}

}  // namespace

RowListModel::RowListModel(QByteArrayList roles, QObject* parent)
    : QAbstractListModel(parent), roles_(std::move(roles)) {}

void RowListModel::setRows(std::vector<Row> rows) {
  makeKeysUnique(rows);
  const std::size_t countBefore = rows_.size();
  removeMissing(rows);
  for (std::size_t position = 0; position < rows.size(); ++position) {
    place(static_cast<int>(position), rows[position]);
  }
  if (rows_.size() != countBefore) {
    emit countChanged();
  }
}

void RowListModel::removeMissing(const std::vector<Row>& wanted) {
  QSet<QString> keys;
  for (const Row& row : wanted) {
    keys.insert(row.key);
  }
  for (int position = rowCountNow() - 1; position >= 0; --position) {
    if (!keys.contains(rows_[static_cast<std::size_t>(position)].key)) {
      beginRemoveRows({}, position, position);
      rows_.erase(rows_.begin() + position);
      endRemoveRows();
    }
  }
}

void RowListModel::place(int position, const Row& wanted) {
  const auto target = rows_.begin() + position;
  const auto found = std::find_if(target, rows_.end(), [&](const Row& row) { return row.key == wanted.key; });
  if (found == rows_.end()) {
    beginInsertRows({}, position, position);
    rows_.insert(target, wanted);
    endInsertRows();
    return;
  }
  if (found != target) {
    const int from = static_cast<int>(std::distance(rows_.begin(), found));
    beginMoveRows({}, from, from, {}, position);
    std::rotate(target, found, std::next(found));
    endMoveRows();
  }
  if (target->values != wanted.values) {
    target->values = wanted.values;
    emit dataChanged(index(position), index(position));
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
