#include "ui/viewmodels/WatchlistViewModel.h"

#include "ui/viewmodels/SaveFailureText.h"

#include <QMetaObject>
#include <utility>
#include <vector>

namespace cirrovane {

void WatchlistViewModel::begin() {
  follow(dashboard().watchlist().publishedFolders());
}

void WatchlistViewModel::update() {
  const WatchlistStore& watchlist = dashboard().watchlist();
  std::vector<FolderRow> rows;
  for (const WatchFolder& folder : watchlist.folders()) {
    rows.push_back({.name = toDisplay(folder.name), .path = toDisplay(folder.path), .id = folder.id});
  }
  rows_.setRows(std::move(rows));
  saveFailure_ = saveFailureText("watchlist", watchlist.saveFailure());
}

void WatchlistViewModel::addFolder() {
  if (context() != nullptr) {
    // Queued, since the dialog would block the caller: a screen reader that presses the button waits for it. The
    // context queues it, since the page may go meanwhile.
    QMetaObject::invokeMethod(
        context(), [&dashboard = context()->dashboard(For<WatchlistViewModel>())] { dashboard.addFolderFromPanel(); },
        Qt::QueuedConnection);
  }
}

void WatchlistViewModel::remove(int row) {
  const FolderRow* shown = rows_.find(row);
  if (shown == nullptr) {
    return;
  }
  DashboardViewModel& dashboard = context()->dashboard(For<WatchlistViewModel>());
  dashboard.watchlist().removeFolder(UUID(shown->id));
  dashboard.refresh();
  updateNow();
}

}  // namespace cirrovane
