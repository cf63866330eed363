#include "ui/viewmodels/ActionsViewModel.h"

#include "ui/viewmodels/Text.h"

#include <utility>
#include <vector>

namespace cirrovane {

ActionsViewModel::ActionsViewModel(QObject* parent) : PageViewModel(parent), rows_({"rank", "title", "detail"}) {}

void ActionsViewModel::begin() {
  follow(dashboard().publishedReport());
}

void ActionsViewModel::update() {
  const SyncHealthReport& report = dashboard().report();
  std::vector<RowListModel::Row> rows;
  for (const RecommendedAction& action : report.actions) {
    const QString title = toQString(action.title);
    rows.push_back({title, {QStringLiteral("%1.").arg(action.rank), title, toQString(action.detail)}});
  }
  emptyText_ = rows.empty() ? toQString(report.summary) : QString();
  rows_.setRows(std::move(rows));
}

}  // namespace cirrovane
