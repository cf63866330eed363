#include "ui/viewmodels/BlockersViewModel.h"

#include "ui/viewmodels/BlockerText.h"

#include <algorithm>
#include <span>

namespace cirrovane {

BlockersViewModel::BlockersViewModel(QObject* parent) : PageViewModel(parent), rows_(blockerRoles()) {}

void BlockersViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
}

void BlockersViewModel::update() {
  const std::span<const SyncBlocker> all = dashboard().report().blockers;
  const std::span<const SyncBlocker> shown = all.first(std::min(kShown, all.size()));
  count_ = all.size();
  isKnown_ = dashboard().verdict().isKnown();
  paths_.clear();
  for (const SyncBlocker& blocker : shown) {
    paths_.push_back(blocker.filePath);
  }
  rows_.setRows(blockerRows(shown));
}

QString BlockersViewModel::countText() const {
  return QStringLiteral("%1 total").arg(count_);
}

QString BlockersViewModel::emptyTitle() const {
  return isKnown_ ? QStringLiteral("No blockers detected") : QStringLiteral("Not scanned yet");
}

QString BlockersViewModel::emptySubtitle() const {
  return isKnown_ ? QStringLiteral("Your watched folders currently show no obvious sync blockers.")
                  : QStringLiteral("What stands in the way shows here after the first scan.");
}

void BlockersViewModel::reveal(int row) {
  if (row >= 0 && static_cast<std::size_t>(row) < paths_.size()) {
    PageViewModel::reveal(paths_[static_cast<std::size_t>(row)]);
  }
}

}  // namespace cirrovane
