#include "ui/viewmodels/WatchlistViewModel.h"

#include "ui/viewmodels/CountText.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/SaveFailureText.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaObject>
#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

/// Of a verdict that is stale, no colour is to be trusted either.
FolderRow rowOf(const WatchFolder& folder, const std::vector<FolderHealth>& scanned, bool isStale) {
  FolderRow row{.name = toDisplay(folder.name),
                .path = toDisplay(folder.path),
                .symbol = QStringLiteral("folder"),
                .tone = Tone::Neutral,
                .health = QStringLiteral("Not scanned yet"),
                .id = folder.id};
  const auto health = std::ranges::find(scanned, folder.id, &FolderHealth::id);
  if (health != scanned.end()) {
    const HealthWords words = healthWords(health->status);
    row.symbol = toQString(words.symbol);
    row.tone = isStale ? Tone::Neutral : toneOf(health->status);
    row.health = QStringLiteral("%1 · Score %2 · %3 · %4")
                     .arg(toQString(words.state))
                     .arg(health->score)
                     .arg(countText(health->scannedFileCount, "file"), countText(health->blockerCount, "blocker"));
  }
  return row;
}

QString removalNoteOf(const std::vector<WatchFolder>& removed) {
  if (removed.empty()) {
    return {};
  }
  return QStringLiteral("Removed ") +
         (removed.size() == 1 ? toDisplay(removed.front().name) : countText(std::ssize(removed), "folder"));
}

}  // namespace

void WatchlistViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
  follow(dashboard().watchlist().publishedFolders());
  follow(dashboard().publishedRemovedFolders());
}

void WatchlistViewModel::update() {
  const WatchlistStore& watchlist = dashboard().watchlist();
  std::vector<FolderRow> rows;
  for (const WatchFolder& folder : watchlist.folders()) {
    rows.push_back(rowOf(folder, dashboard().report().folderHealth, dashboard().verdict().isStale()));
  }
  rows_.setRows(std::move(rows));
  removalNote_ = removalNoteOf(dashboard().removedFolders());
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
  context()->dashboard(For<WatchlistViewModel>()).removeFolder(UUID(shown->id));
  updateNow();
}

void WatchlistViewModel::undoRemoval() {
  if (context() != nullptr) {
    context()->dashboard(For<WatchlistViewModel>()).restoreRemovedFolders();
    updateNow();
  }
}

bool WatchlistViewModel::addDropped(const QList<QUrl>& items) {
  std::vector<std::string> folders;
  for (const QUrl& item : items) {
    const QString path = item.isLocalFile() ? QDir::cleanPath(item.toLocalFile()) : QString();
    if (!path.isEmpty() && QFileInfo(path).isDir()) {
      folders.push_back(path.toStdString());
    }
  }
  if (context() == nullptr || folders.empty()) {
    return false;
  }
  context()->dashboard(For<WatchlistViewModel>()).addFolders(folders);
  updateNow();
  return true;
}

}  // namespace cirrovane
