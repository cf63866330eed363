#pragma once

#include "base/Time.h"
#include "ui/viewmodels/BlockerArrangement.h"
#include "ui/viewmodels/ListModelBase.h"

#include <QMetaType>
#include <QString>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace cirrovane {

/// A blocker in words, for a list of very many.
struct ListedBlocker {
  Q_GADGET
  Q_PROPERTY(QString key MEMBER key)
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString reason MEMBER reason)
  Q_PROPERTY(QString folderName MEMBER folderName)
  Q_PROPERTY(QString path MEMBER path)
  Q_PROPERTY(QString details MEMBER details)
  Q_PROPERTY(QString amount MEMBER amount)
  Q_PROPERTY(bool isStuck MEMBER isStuck)

 public:
  /// By which the list knows it again.
  QString key;
  /// The last component of the path; the whole path where that has none.
  QString name;
  QString reason;
  QString folderName;
  QString path;
  QString details;
  /// "1.2 MB · waiting 12 min"; what is not known is left out.
  QString amount;
  /// Whether it waits longer than what waits beside it explains.
  bool isStuck = false;

  friend bool operator==(const ListedBlocker&, const ListedBlocker&) = default;
};

/// The rows of a list of blockers, which are made when a view asks for them.
class BlockerListModel final : public ListModelBase {
 public:
  explicit BlockerListModel(QObject* parent = nullptr) : ListModelBase(ListedBlocker::staticMetaObject, parent) {}

  /// Makes the list hold these, and views show it from its start. Answers what it held.
  ArrangedBlockers startOver(ArrangedBlockers next, Time now);
  /// Makes the list hold these by edits, which leave scroll position, focus and what lies between them alone. Answers
  /// what it held.
  ArrangedBlockers change(const RowEdits& edits, ArrangedBlockers next, Time now);
  /// Gives away what it holds. Nobody may look at the list any more.
  ArrangedBlockers take() { return std::exchange(arranged_, {}); }
  /// Tells the waits anew.
  void setNow(Time now);

  const ArrangedBlockers& arranged() const { return arranged_; }
  /// The blocker of a row; nullptr when there is no such row.
  const SyncBlocker* find(int row) const;
  /// A row, whose number is below count().
  ListedBlocker row(int row) const { return *static_cast<const ListedBlocker*>(gadgetAt(row)); }

  int count() const override { return static_cast<int>(arranged_.places.size()); }
  int indexOf(const QString& key) const override;

 private:
  struct Made {
    int number = -1;
    ListedBlocker row;
  };

  const void* gadgetAt(int row) const override;
  ListedBlocker make(int row) const;
  void remove(const RowRun& run);
  void insert(const RowRun& run, const std::vector<std::uint32_t>& places);
  void tellRows();
  void tellCount(int before);

  ArrangedBlockers arranged_;
  Time now_;
  /// The row that was made last. A view asks for its roles one after another.
  mutable std::optional<Made> made_;
};

}  // namespace cirrovane
