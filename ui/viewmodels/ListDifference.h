#pragma once

#include <QHash>
#include <QModelIndex>
#include <QSet>
#include <QString>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace cirrovane {

/// Changes the items of a list model step by step into those that are wanted, so that views leave alone what stays.
/// Items have a key by which they are known again, and are compared by ==. A friend of the model.
template <class Model, class Item>
class ListDifference {
 public:
  ListDifference(Model& model, std::vector<Item>& items) : model_(model), items_(items) {}

  /// Of items with equal keys each later one counts as an item of its own.
  void become(std::vector<Item> wanted) {
    makeKeysUnique(wanted);
    removeMissing(wanted);
    const QSet<QString> present = keysOf(items_);
    std::size_t position = 0;
    while (position < wanted.size()) {
      const auto from = wanted.begin() + static_cast<std::ptrdiff_t>(position);
      const auto to = std::find_if(from, wanted.end(), [&](const Item& item) { return present.contains(item.key); });
      if (to != from) {
        insert(position, from, to);
      } else {
        place(position, std::move(*from));
      }
      position += static_cast<std::size_t>(std::max(std::distance(from, to), std::ptrdiff_t{1}));
    }
  }

  static void makeKeysUnique(std::vector<Item>& items) {
    QHash<QString, int> seen;
    for (Item& item : items) {
      if (const int earlier = seen[item.key]++; earlier > 0) {
        item.key += QLatin1Char('\n') + QString::number(earlier);
      }
    }
  }

 private:
  using Iterator = typename std::vector<Item>::iterator;

  static QSet<QString> keysOf(const std::vector<Item>& items) {
    QSet<QString> keys;
    keys.reserve(static_cast<qsizetype>(items.size()));
    for (const Item& item : items) {
      keys.insert(item.key);
    }
    return keys;
  }

  Iterator at(std::size_t position) { return items_.begin() + static_cast<std::ptrdiff_t>(position); }

  /// In runs, the last first.
  void removeMissing(const std::vector<Item>& wanted) {
    const QSet<QString> keys = keysOf(wanted);
    std::size_t end = items_.size();
    while (end > 0) {
      std::size_t start = end;
      while (start > 0 && !keys.contains(items_[start - 1].key)) {
        --start;
      }
      if (start == end) {
        --end;
        continue;
      }
      model_.beginRemoveRows({}, static_cast<int>(start), static_cast<int>(end) - 1);
      items_.erase(at(start), at(end));
      model_.endRemoveRows();
      end = start;
    }
  }

  void insert(std::size_t position, Iterator from, Iterator to) {
    const int first = static_cast<int>(position);
    model_.beginInsertRows({}, first, first + static_cast<int>(std::distance(from, to)) - 1);
    items_.insert(at(position), std::make_move_iterator(from), std::make_move_iterator(to));
    model_.endInsertRows();
  }

  /// Brings an item that is already there, not before the position, to it.
  void place(std::size_t position, Item wanted) {
    const auto target = at(position);
    const auto found = std::find_if(target, items_.end(), [&](const Item& item) { return item.key == wanted.key; });
    const int row = static_cast<int>(position);
    if (found != target) {
      const int from = static_cast<int>(std::distance(items_.begin(), found));
      model_.beginMoveRows({}, from, from, {}, row);
      std::rotate(target, found, std::next(found));
      model_.endMoveRows();
    }
    if (!(*target == wanted)) {
      *target = std::move(wanted);
      emit model_.dataChanged(model_.index(row), model_.index(row));
    }
  }

  Model& model_;
  std::vector<Item>& items_;
};

}  // namespace cirrovane
