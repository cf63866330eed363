#include "ui/viewmodels/BlockersViewModel.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace cirrovane {

void BlockersViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
}

void BlockersViewModel::update() {
  const std::span<const SyncBlocker> all = dashboard().report().blockers;
  const std::span<const SyncBlocker> shown = all.first(std::min(kShown, all.size()));
  count_ = all.size();
  isKnown_ = dashboard().verdict().isKnown();
  std::vector<BlockerRow> rows;
  for (const SyncBlocker& blocker : shown) {
    rows.push_back(blockerRow(blocker));
  }
  rows_.setRows(std::move(rows));
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
  if (const BlockerRow* shown = rows_.find(row)) {
    PageViewModel::reveal(shown->filePath);
  }
}

}  // namespace cirrovane
