#include "ui/viewmodels/AllBlockersViewModel.h"

#include "base/JSONRecord.h"
#include "base/Path.h"
#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/CountText.h"
#include "ui/viewmodels/Text.h"
#include "ui/viewmodels/ToolsEnvironment.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

struct OrderChoice {
  BlockerOrder order;
  std::string_view name;
  std::string_view title;
};

constexpr std::array<OrderChoice, 5> kOrders = {{
    {BlockerOrder::seriousness, "seriousness", "Most Serious First"},
    {BlockerOrder::name, "name", "By Name"},
    {BlockerOrder::path, "path", "By Path"},
    {BlockerOrder::size, "size", "Largest First"},
    {BlockerOrder::waiting, "waiting", "Waiting Longest First"},
}};

QString idOf(const WatchFolder& folder) {
  return toQString(folder.id.text());
}

}  // namespace

/// Work beside the main thread, and what comes of it.
struct AllBlockersViewModel::Job {
  BlockerQuery query;
  Shared<SyncHealthReport> report;
  Shared<UploadRecord> uploads;
  Time now;
  /// The keys that the list has; nullptr where it starts over anyway.
  std::shared_ptr<const std::vector<std::size_t>> before;
  std::atomic<bool> isUnwanted = false;

  /// Absent when it was given up.
  std::optional<ArrangedBlockers> arranged;
  /// Absent where the list has to start over.
  std::optional<RowEdits> edits;

  void run() {
    arranged = arrange(query, report, *uploads, now, isUnwanted);
    if (arranged && before) {
      edits = editsBetween(*before, *arranged->keys, kMostRuns);
    }
  }
};

AllBlockersViewModel::AllBlockersViewModel(QObject* parent) : AllBlockersViewModel(runDetached, parent) {}

AllBlockersViewModel::AllBlockersViewModel(Background background, QObject* parent)
    : PageViewModel(parent), background_(std::move(background)) {
  std::vector<EntryRow> orders;
  orders.reserve(kOrders.size());
  for (const OrderChoice& choice : kOrders) {
    orders.push_back({.name = toQString(choice.name), .title = toQString(choice.title), .symbol = {}});
  }
  orders_.setRows(std::move(orders));
  showChoices();
}

AllBlockersViewModel::~AllBlockersViewModel() {
  if (job_) {
    job_->isUnwanted = true;
  }
  release(std::make_shared<const ArrangedBlockers>(rows_.take()));
}

void AllBlockersViewModel::setSearch(const QString& search) {
  if (search == query_.search) {
    return;
  }
  query_.search = search;
  requery();
}

QString AllBlockersViewModel::reason() const {
  return query_.reason ? toQString(rawValue(*query_.reason)) : QString();
}

void AllBlockersViewModel::setReason(const QString& reason) {
  if (reason == this->reason()) {
    return;
  }
  BlockerReason chosen{};
  query_.reason = fromRawValue(reason.toStdString(), chosen) ? std::optional(chosen) : std::nullopt;
  requery();
}

void AllBlockersViewModel::setFolder(const QString& folder) {
  if (folder == folder_) {
    return;
  }
  folder_ = folder;
  findFolder();
  requery();
}

QString AllBlockersViewModel::order() const {
  return toQString(std::ranges::find(kOrders, query_.order, &OrderChoice::order)->name);
}

void AllBlockersViewModel::setOrder(const QString& order) {
  if (order == this->order()) {
    return;
  }
  const auto found = std::ranges::find(kOrders, order.toStdString(), &OrderChoice::name);
  if (found != kOrders.end()) {
    query_.order = found->order;
    requery();
  }
}

QString AllBlockersViewModel::countText() const {
  if (!shown_) {
    return {};
  }
  const auto all = static_cast<std::int64_t>(rows_.arranged().report->blockers.size());
  return shown_->wantsAll() ? cirrovane::countText(all, "blocker")
                            : QStringLiteral("%1 of %2").arg(rows_.count()).arg(all);
}

QString AllBlockersViewModel::emptyTitle() const {
  if (!isKnown_) {
    return QStringLiteral("Not scanned yet");
  }
  return shown_ && rows_.arranged().report->blockers.empty() ? QStringLiteral("No blockers detected")
                                                             : QStringLiteral("No blockers match");
}

QString AllBlockersViewModel::emptySubtitle() const {
  if (!isKnown_) {
    return QStringLiteral("What stands in the way shows here after the first scan.");
  }
  return shown_ && rows_.arranged().report->blockers.empty()
             ? QStringLiteral("Your watched folders currently show no obvious sync blockers.")
             : QStringLiteral("There are others, which the search and the filters leave out.");
}

void AllBlockersViewModel::clear() {
  const BlockerOrder order = query_.order;
  query_ = {};
  query_.order = order;
  folder_.clear();
  chosenFolder_.reset();
  requery();
}

void AllBlockersViewModel::reveal(int row) {
  if (const SyncBlocker* blocker = rows_.find(row)) {
    PageViewModel::reveal(std::string(blocker->filePath));
  }
}

void AllBlockersViewModel::copyPath(int row) {
  const SyncBlocker* blocker = rows_.find(row);
  if (blocker == nullptr) {
    return;
  }
  context()->tools(For<AllBlockersViewModel>()).clipboard.setText(displayText(blocker->filePath));
  note_ = QStringLiteral("Copied the path of ") + rows_.row(row).name;
  emit changed();
}

void AllBlockersViewModel::tellWaits() {
  if (shown_) {
    rows_.setNow(dashboard().now());
  }
}

void AllBlockersViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
  follow(dashboard().publishedUploadRecord());
  findFolder();
}

void AllBlockersViewModel::update() {
  isKnown_ = dashboard().verdict().isKnown();
  arrangeSoon();
}

QString AllBlockersViewModel::titleOf(const ListModel<EntryRow>& list, int row) {
  const EntryRow* chosen = list.find(row);
  return chosen != nullptr ? chosen->title : QString();
}

void AllBlockersViewModel::requery() {
  note_.clear();
  showChoices();
  if (context() != nullptr) {
    updateNow();
  } else {
    emit changed();
  }
}

void AllBlockersViewModel::findFolder() {
  chosenFolder_.reset();
  if (context() != nullptr && !folder_.isEmpty()) {
    const std::vector<WatchFolder>& folders = dashboard().watchlist().folders();
    const auto found = std::ranges::find(folders, folder_, idOf);
    if (found != folders.end()) {
      chosenFolder_ = *found;
    } else {
      folder_.clear();
    }
  }
  query_.folderPath = chosenFolder_ ? chosenFolder_->path : std::string();
  showChoices();
}

void AllBlockersViewModel::showChoices() {
  const ArrangedBlockers& arranged = rows_.arranged();
  std::vector<EntryRow> reasons = {{.name = {}, .title = QStringLiteral("All Reasons"), .symbol = {}}};
  for (const BlockerReason reason : kAllBlockerReasons) {
    if (reason == query_.reason || std::ranges::find(arranged.reasons, reason) != arranged.reasons.end()) {
      reasons.push_back({.name = toQString(rawValue(reason)), .title = toQString(displayTitle(reason)), .symbol = {}});
    }
  }
  reasons_.setRows(std::move(reasons));

  std::vector<WatchFolder> occurring = arranged.folders;
  if (chosenFolder_ && std::ranges::find(occurring, chosenFolder_->id, &WatchFolder::id) == occurring.end()) {
    occurring.push_back(*chosenFolder_);
  }
  std::vector<EntryRow> folders = {{.name = {}, .title = QStringLiteral("All Folders"), .symbol = {}}};
  for (const WatchFolder& folder : occurring) {
    const bool isOnlyOne = std::ranges::count(occurring, folder.name, &WatchFolder::name) == 1;
    folders.push_back({.name = idOf(folder), .title = toDisplay(isOnlyOne ? folder.name : folder.path), .symbol = {}});
  }
  folders_.setRows(std::move(folders));
}

bool AllBlockersViewModel::isUpToDate() const {
  return shown_ == query_ && &*rows_.arranged().report == &dashboard().report() &&
         &*shownUploads_ == &*dashboard().publishedUploadRecord().value();
}

void AllBlockersViewModel::arrangeSoon() {
  if (job_) {
    // Of a report that changes all the time, each look is shown before the next begins.
    job_->isUnwanted = job_->query != query_;
    isWorkDue_ = true;
    return;
  }
  isWorkDue_ = false;
  if (isUpToDate()) {
    return;
  }
  job_ = std::make_shared<Job>();
  job_->query = query_;
  job_->report = dashboard().publishedReport().value();
  job_->uploads = dashboard().publishedUploadRecord().value();
  job_->now = dashboard().now();
  job_->before = shown_ == query_ ? rows_.arranged().keys : nullptr;
  background_([this, job = job_, alive = std::weak_ptr(alive_),
               &main = context()->tools(For<AllBlockersViewModel>()).mainExecutor] {
    job->run();
    main.post([this, alive] {
      if (!alive.expired()) {
        finish();
      }
    });
  });
}

void AllBlockersViewModel::finish() {
  const std::shared_ptr<Job> job = std::exchange(job_, nullptr);
  if (auto& arranged = job->arranged; arranged && job->query == query_) {
    show(*job, std::move(*arranged));
  }
  if (isWorkDue_) {
    arrangeSoon();
  }
  release(job);
}

void AllBlockersViewModel::show(Job& job, ArrangedBlockers arranged) {
  const bool keepsPlace = shown_ == job.query;
  shown_ = job.query;
  shownUploads_ = job.uploads;
  ArrangedBlockers old;
  if (keepsPlace && job.edits) {
    old = rows_.change(*job.edits, std::move(arranged), job.now);
  } else {
    if (keepsPlace) {
      emit aboutToStartOver();
    }
    old = rows_.startOver(std::move(arranged), job.now);
    emit startedOver(keepsPlace);
  }
  job.arranged = std::move(old);
  showChoices();
  emit changed();
}

void AllBlockersViewModel::release(std::shared_ptr<const void> held) {
  background_([held = std::move(held)] {});
}

}  // namespace cirrovane
