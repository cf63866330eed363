#pragma once

#include "ui/viewmodels/ListModelBase.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace cirrovane {

/// A list of rows for the window. It changes only where its content changes, so that a refresh leaves scroll positions,
/// focus and open rows alone.
///
/// A row is a gadget. It is its own source, or a function makes it from a source when a view asks for the row: there
/// may be very many, with a few in sight. `keyOf(source)`, a function beside the source's type, gives the QString by
/// which the list knows a source again; == tells whether it changed.
template <class Row, class Source = Row>
class ListModel final : public ListModelBase {
 public:
  using Make = std::function<Row(const Source&)>;

  /// For rows that are their own source.
  explicit ListModel(QObject* parent = nullptr) : ListModelBase(Row::staticMetaObject, parent) {
    static_assert(kIsOwnSource, "Rows of another source need a function that makes them");
  }
  explicit ListModel(Make make, QObject* parent = nullptr)
      : ListModelBase(Row::staticMetaObject, parent), make_(std::move(make)) {}

  /// Makes the list hold these, and leaves rows that stay alone. Equal keys make rows of their own.
  void setRows(std::vector<Source> sources) {
    const int before = count();
    become(itemsOf(std::move(sources)));
    tellCount(before);
  }
  /// Makes the list hold these, and views show it from its start.
  void startOver(std::vector<Source> sources) {
    const int before = count();
    beginResetModel();
    items_ = itemsOf(std::move(sources));
    made_.reset();
    endResetModel();
    tellCount(before);
  }

  /// The source of a row; nullptr when there is no such row.
  const Source* find(int row) const {
    return row >= 0 && row < count() ? &items_[static_cast<std::size_t>(row)].source : nullptr;
  }
  /// A row, whose number is below count().
  Row row(int row) const { return *static_cast<const Row*>(gadgetAt(row)); }

  int count() const override { return static_cast<int>(items_.size()); }
  int indexOf(const QString& key) const override {
    const auto found = std::ranges::find(items_, key, &Item::key);
    return found != items_.end() ? static_cast<int>(std::distance(items_.begin(), found)) : -1;
  }

 private:
  const void* gadgetAt(int row) const override {
    const Source& source = items_[static_cast<std::size_t>(row)].source;
    if constexpr (kIsOwnSource) {
      return &source;
    } else {
      if (!made_ || made_->number != row) {
        made_.emplace(Made{row, make_(source)});
      }
      return &made_->row;
    }
  }

  static constexpr bool kIsOwnSource = std::is_same_v<Row, Source>;

  struct Item {
    QString key;
    Source source;

    friend bool operator==(const Item&, const Item&) = default;
  };
  using Items = std::vector<Item>;
  using Iterator = typename Items::iterator;

  /// The row that was made last. A view asks for its roles one after another.
  struct Made {
    int number = -1;
    Row row;
  };

  static Items itemsOf(std::vector<Source> sources) {
    Items items;
    items.reserve(sources.size());
    QHash<QString, int> seen;
    for (Source& source : sources) {
      QString key = keyOf(source);
      if (const int earlier = seen[key]++; earlier > 0) {
        key += QLatin1Char('\n') + QString::number(earlier);
      }
      items.push_back({std::move(key), std::move(source)});
    }
    return items;
  }

  static QSet<QString> keysOf(const Items& items) {
    QSet<QString> keys;
    keys.reserve(static_cast<qsizetype>(items.size()));
    for (const Item& item : items) {
      keys.insert(item.key);
    }
    return keys;
  }

  Iterator at(std::size_t position) { return items_.begin() + static_cast<std::ptrdiff_t>(position); }

  void become(Items wanted) {
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

  /// Removes runs of rows, the last run first.
  void removeMissing(const Items& wanted) {
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
      beginRemoveRows({}, static_cast<int>(start), static_cast<int>(end) - 1);
      items_.erase(at(start), at(end));
      made_.reset();
      endRemoveRows();
      end = start;
    }
  }

  void insert(std::size_t position, Iterator from, Iterator to) {
    const int first = static_cast<int>(position);
    beginInsertRows({}, first, first + static_cast<int>(std::distance(from, to)) - 1);
    items_.insert(at(position), std::make_move_iterator(from), std::make_move_iterator(to));
    made_.reset();
    endInsertRows();
  }

  /// Brings an item from the position or from behind it to the position.
  void place(std::size_t position, Item wanted) {
    const auto target = at(position);
    const auto found = std::find_if(target, items_.end(), [&](const Item& item) { return item.key == wanted.key; });
    const int row = static_cast<int>(position);
    if (found != target) {
      const int from = static_cast<int>(std::distance(items_.begin(), found));
      beginMoveRows({}, from, from, {}, row);
      std::rotate(target, found, std::next(found));
      made_.reset();
      endMoveRows();
    }
    if (!(*target == wanted)) {
      *target = std::move(wanted);
      made_.reset();
      emit dataChanged(index(row), index(row));
    }
  }

  void tellCount(int before) {
    if (count() != before) {
      emit countChanged();
    }
  }

  Make make_;
  Items items_;
  mutable std::optional<Made> made_;
};

}  // namespace cirrovane
