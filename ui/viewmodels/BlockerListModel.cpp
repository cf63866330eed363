#include "ui/viewmodels/BlockerListModel.h"

#include "base/Path.h"
#include "coordinator/UploadWords.h"
#include "ui/viewmodels/Text.h"

#include <QStringList>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

namespace cirrovane {
namespace {

constexpr int kKeyBase = 16;

}  // namespace

ArrangedBlockers BlockerListModel::startOver(ArrangedBlockers next, Time now) {
  const int before = count();
  beginResetModel();
  ArrangedBlockers old = std::exchange(arranged_, std::move(next));
  now_ = now;
  made_.reset();
  endResetModel();
  tellCount(before);
  return old;
}

ArrangedBlockers BlockerListModel::change(const RowEdits& edits, ArrangedBlockers next, Time now) {
  const int before = count();
  for (const RowRun& run : edits.removals) {
    remove(run);
  }
  // From here on the rows that stay are those of the next report.
  const std::vector<std::uint32_t> wanted = next.places;
  std::for_each(edits.insertions.rbegin(), edits.insertions.rend(), [&next](const RowRun& run) {
    const auto first = next.places.begin() + static_cast<std::ptrdiff_t>(run.first);
    next.places.erase(first, first + static_cast<std::ptrdiff_t>(run.count));
  });
  ArrangedBlockers old = std::exchange(arranged_, std::move(next));
  now_ = now;
  made_.reset();
  for (const RowRun& run : edits.insertions) {
    insert(run, wanted);
  }
  tellRows();
  tellCount(before);
  return old;
}

void BlockerListModel::setNow(Time now) {
  now_ = now;
  made_.reset();
  tellRows();
}

const SyncBlocker* BlockerListModel::find(int row) const {
  return row >= 0 && row < count() ? &arranged_.at(static_cast<std::size_t>(row)) : nullptr;
}

int BlockerListModel::indexOf(const QString& key) const {
  const std::vector<std::size_t>& keys = *arranged_.keys;
  bool isNumber = false;
  const std::size_t wanted = key.toULongLong(&isNumber, kKeyBase);
  const auto found = isNumber ? std::ranges::find(keys, wanted) : keys.end();
  return found != keys.end() ? static_cast<int>(std::distance(keys.begin(), found)) : -1;
}

const void* BlockerListModel::gadgetAt(int row) const {
  if (!made_ || made_->number != row) {
    made_.emplace(Made{row, make(row)});
  }
  return &made_->row;
}

ListedBlocker BlockerListModel::make(int row) const {
  const SyncBlocker& blocker = arranged_.at(static_cast<std::size_t>(row));
  const std::string_view name = lastPathComponent(blocker.filePath);
  const PendingUpload* wait = arranged_.waitOf(blocker);
  QStringList amount;
  if (blocker.fileSize) {
    amount += toQString(bytesText(*blocker.fileSize));
  }
  if (wait != nullptr && wait->pendingSince) {
    amount += QStringLiteral("waiting ") + toQString(waitText(now_ - *wait->pendingSince));
  }
  return {.key = QString::number(blockerKey(blocker), kKeyBase),
          .name = toDisplay(name.empty() ? blocker.filePath : name),
          .reason = toQString(displayTitle(blocker.reason)),
          .folderName = toDisplay(blocker.folderName),
          .path = toDisplay(blocker.filePath),
          .details = toDisplay(blocker.details),
          .amount = amount.join(QStringLiteral(" · ")),
          .isStuck = wait != nullptr && wait->isStuck};
}

void BlockerListModel::tellRows() {
  if (count() > 0) {
    emit dataChanged(index(0), index(count() - 1));
  }
}

void BlockerListModel::tellCount(int before) {
  if (count() != before) {
    emit countChanged();
  }
}

void BlockerListModel::remove(const RowRun& run) {
  const auto first = arranged_.places.begin() + static_cast<std::ptrdiff_t>(run.first);
  beginRemoveRows({}, static_cast<int>(run.first), static_cast<int>(run.first + run.count) - 1);
  arranged_.places.erase(first, first + static_cast<std::ptrdiff_t>(run.count));
  made_.reset();
  endRemoveRows();
}

void BlockerListModel::insert(const RowRun& run, const std::vector<std::uint32_t>& places) {
  const auto from = places.begin() + static_cast<std::ptrdiff_t>(run.first);
  beginInsertRows({}, static_cast<int>(run.first), static_cast<int>(run.first + run.count) - 1);
  arranged_.places.insert(arranged_.places.begin() + static_cast<std::ptrdiff_t>(run.first), from,
                          from + static_cast<std::ptrdiff_t>(run.count));
  made_.reset();
  endInsertRows();
}

}  // namespace cirrovane
