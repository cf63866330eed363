#include "ui/viewmodels/WatchlistViewModel.h"

#include "ui/viewmodels/SaveFailureText.h"
#include "ui/viewmodels/Text.h"

#include <QMetaObject>
#include <cstddef>
#include <utility>

namespace cirrovane {

WatchlistViewModel::WatchlistViewModel(QObject* parent) : PageViewModel(parent), rows_({"name", "path"}) {}

void WatchlistViewModel::begin() {
  follow(dashboard().watchlist().publishedFolders());
}

void WatchlistViewModel::update() {
  const WatchlistStore& watchlist = dashboard().watchlist();
  std::vector<RowListModel::Row> rows;
  ids_.clear();
  for (const WatchFolder& folder : watchlist.folders()) {
    ids_.push_back(folder.id);
    rows.push_back({toQString(folder.id.text()), {toDisplay(folder.name), toDisplay(folder.path)}});
  }
  rows_.setRows(std::move(rows));
  saveFailure_ = saveFailureText("watchlist", watchlist.saveFailure());
}

void WatchlistViewModel::addFolder() {
  if (context() != nullptr) {
    // Later, since the dialog would keep waiting whoever has pressed the button for the user; and by the context, since
    // the page may go meanwhile.
    QMetaObject::invokeMethod(
        context(), [&dashboard = context()->dashboard(For<WatchlistViewModel>())] { dashboard.addFolderFromPanel(); },
        Qt::QueuedConnection);
  }
}

void WatchlistViewModel::remove(int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= ids_.size()) {
    return;
  }
  const UUID id = ids_[static_cast<std::size_t>(row)];
  DashboardViewModel& dashboard = context()->dashboard(For<WatchlistViewModel>());
  dashboard.watchlist().removeFolder(id);
  dashboard.refresh();
  updateNow();
}

}  // namespace cirrovane
