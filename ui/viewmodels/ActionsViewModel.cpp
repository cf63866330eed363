#include "ui/viewmodels/ActionsViewModel.h"

#include "ui/viewmodels/Text.h"

#include <utility>
#include <vector>

namespace cirrovane {

void ActionsViewModel::begin() {
  follow(dashboard().publishedReport());
}

void ActionsViewModel::update() {
  const SyncHealthReport& report = dashboard().report();
  std::vector<ActionRow> rows;
  rows.reserve(report.actions.size());
  for (const RecommendedAction& action : report.actions) {
    rows.push_back({.rank = QStringLiteral("%1.").arg(action.rank),
                    .title = toQString(action.title),
                    .detail = toQString(action.detail)});
  }
  rows_.setRows(std::move(rows));
}

}  // namespace cirrovane
