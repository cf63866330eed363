#include "coordinator/LiveIndex.h"

#include <utility>

namespace cirrovane {
namespace {

ListingObserver* listingsOf(const std::shared_ptr<FolderWatch>& watch) {
  return watch != nullptr ? &watch->listings() : nullptr;
}

}  // namespace

/// The index that readings go on in, and the one that the latest full scan made. Each is touched by one task at a time:
/// the first on the executor for updates alone, the second on that for scans until its scan is through.
struct LiveIndex::Indexes {
  std::optional<ScanIndex> current;
  std::optional<ScanIndex> scanned;
  Shared<SyncHealthReport> report;

  LiveReading reading(const ScanIndex& index, UpdateResult result, bool isJudgedAnew) {
    if (result.isChanged || isJudgedAnew) {
      report = Shared<SyncHealthReport>(index.report());
    }
    return {report, std::move(result.gone), index.nextStall(report->generatedAt), {}};
  }
};

LiveIndex::LiveIndex(const LiveExecutors& executors, const ScanSource& source, const MonotonicClock& monotonicClock)
    : executors_(executors), source_(source), monotonicClock_(monotonicClock), indexes_(std::make_shared<Indexes>()) {}

template <class Work, class Then>
void LiveIndex::run(Executor& executor, Work work, Then then) const {
  executor.post([&main = executors_.main, alive = std::weak_ptr(alive_), work = std::move(work),
                 then = std::move(then)]() mutable {
    if (alive.expired()) {
      return;
    }
    main.post([alive, then = std::move(then), result = work()]() mutable {
      if (!alive.expired()) {
        then(std::move(result));
      }
    });
  });
}

void LiveIndex::scan(std::vector<WatchFolder> folders, std::shared_ptr<FolderWatch> watch,
                     std::function<void(Uptime)> then) {
  run(
      executors_.scan,
      [indexes = indexes_, source = source_, &clock = monotonicClock_, folders = std::move(folders),
       watch = std::move(watch)] {
        const Uptime begin = clock.sinceBoot();
        indexes->scanned = ScanIndex::scan(folders, source.fileSystem, source.clock, source.staleUploadThreshold,
                                           source.progress, listingsOf(watch));
        return clock.sinceBoot() - begin;
      },
      std::move(then));
}

void LiveIndex::adopt(const PendingChanges& told, bool compares, std::shared_ptr<FolderWatch> watch,
                      std::function<void(LiveReading)> then) {
  run(
      executors_.updates,
      [indexes = indexes_, changes = told.list(), compares, watch = std::move(watch)] {
        std::vector<std::string> differences;
        std::vector<std::string> gone;
        if (indexes->current) {
          gone = indexes->scanned->goneSince(*indexes->current);
          differences = compares ? indexes->current->differences(*indexes->scanned, changes) : differences;
        }
        std::swap(indexes->current, indexes->scanned);
        indexes->scanned.reset();
        UpdateResult result = indexes->current->update(changes, listingsOf(watch));
        LiveReading reading = indexes->reading(*indexes->current, std::move(result), /*isJudgedAnew=*/true);
        reading.gone.insert(reading.gone.end(), gone.begin(), gone.end());
        reading.differences = std::move(differences);
        return reading;
      },
      std::move(then));
}

void LiveIndex::read(std::vector<FolderChange> changes, std::shared_ptr<FolderWatch> watch,
                     std::function<void(Shared<SyncHealthReport>)> glance, std::function<void(LiveReading)> then) {
  run(
      executors_.updates,
      [indexes = indexes_, &main = executors_.main, alive = std::weak_ptr(alive_), changes = std::move(changes),
       watch = std::move(watch), glance = std::move(glance)] {
        std::optional<SyncHealthReport> early = glance ? indexes->current->glance(changes) : std::nullopt;
        if (early) {
          main.post([alive, glance, report = Shared<SyncHealthReport>(std::move(*early))] {
            if (!alive.expired()) {
              glance(report);
            }
          });
        }
        UpdateResult result = indexes->current->update(changes, listingsOf(watch));
        return indexes->reading(*indexes->current, std::move(result), early.has_value() || changes.empty());
      },
      std::move(then));
}

void LiveIndex::readBlocked(std::shared_ptr<FolderWatch> watch, std::function<void(LiveReading)> then) {
  run(
      executors_.updates,
      [indexes = indexes_, watch = std::move(watch)] {
        return indexes->reading(*indexes->current,
                                indexes->current->readBlockedAgain(kMostBlockedReread, listingsOf(watch)),
                                /*isJudgedAnew=*/false);
      },
      std::move(then));
}

}  // namespace cirrovane
