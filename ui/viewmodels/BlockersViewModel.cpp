#include "ui/viewmodels/BlockersViewModel.h"

#include "ui/viewmodels/BlockerText.h"

#include <algorithm>
#include <span>

namespace cirrovane {

BlockersViewModel::BlockersViewModel(QObject* parent) : PageViewModel(parent), rows_(blockerRoles()) {}

void BlockersViewModel::begin() {
  follow(dashboard().publishedReport());
}

void BlockersViewModel::update() {
  const std::span<const SyncBlocker> all = dashboard().report().blockers;
  const std::span<const SyncBlocker> shown = all.first(std::min(kShown, all.size()));
  count_ = all.size();
  paths_.clear();
  for (const SyncBlocker& blocker : shown) {
    paths_.push_back(blocker.filePath);
  }
  rows_.setRows(blockerRows(shown));
}

QString BlockersViewModel::countText() const {
  return QStringLiteral("%1 total").arg(count_);
}

void BlockersViewModel::reveal(int row) {
  if (row >= 0 && static_cast<std::size_t>(row) < paths_.size()) {
    dashboard().revealInFinder(paths_[static_cast<std::size_t>(row)]);
  }
}

}  // namespace cirrovane
