#pragma once

#include "base/Published.h"
#include "base/Shared.h"
#include "coordinator/LiveIndex.h"
#include "coordinator/LiveRules.h"
#include "coordinator/Liveness.h"
#include "coordinator/PendingChanges.h"
#include "coordinator/Suspects.h"
#include "coordinator/TurnedVerdict.h"
#include "coordinator/VerdictStanding.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/FolderWatch.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Makes the watch that tells the listener of changes, which outlives it; gives nullptr where the system has none.
using MakeFolderWatch = std::function<std::unique_ptr<FolderWatch>(FolderWatchListener& listener)>;

/// What a live verdict needs; outlives it and all work that it has under way.
struct LiveEnvironment {
  LiveExecutors executors;
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  Alarm& alarm;
  MakeFolderWatch makeWatch;
};

/// Who scans in full where nothing hurries.
struct LivePace {
  /// Whether somebody waits for the verdict and no cycles run, so that it scans by itself.
  bool isWaiting = false;
  /// A full scan this often besides, by the user's wish.
  std::optional<std::chrono::nanoseconds> interval;
};

/// Why a cycle asks for a report.
enum class CycleCause : std::uint8_t {
  /// The user's wish, a change of the watchlist, or waking.
  asked,
  /// The timer, or a surface that appeared.
  regular,
};

/// The report that follows the files: of a full scan, and then of what the watch tells, read as it is told. Only a full
/// scan turns NO to YES. Main thread only; it may be destroyed at any time.
class LiveVerdict {
 public:
  using TakeReport = std::function<void(const Shared<SyncHealthReport>& report, const Confirmation& confirmation)>;

  LiveVerdict(const ScanSource& source, LiveEnvironment environment, LivePace pace = {});
  ~LiveVerdict();

  LiveVerdict(const LiveVerdict&) = delete;
  LiveVerdict& operator=(const LiveVerdict&) = delete;

  // What is published: observers are told before each change and after it.

  /// The latest report; absent before the first full scan is through.
  const Published<std::optional<Shared<SyncHealthReport>>>& report() const { return report_; }
  const Published<Liveness>& liveness() const { return liveness_; }

  /// Up to when the report is known to hold: the present while live. Absent before the first.
  std::optional<Confirmation> confirmation() const;
  /// Whether the watch has said that it stands, or why it cannot.
  bool hasWatchAnswered() const { return !awaitsStand_; }

  /// The folders that it follows.
  const std::vector<WatchFolder>& folders() const { return folders_; }
  /// Follows these folders from now on, beginning with a full scan.
  void follow(std::vector<WatchFolder> folders);
  /// A report over the folders for a cycle, by a full scan that has yet to begin or by the index.
  void obtain(const std::vector<WatchFolder>& folders, CycleCause cause, TakeReport then);
  /// Scans in full as soon as the scan under way, if there is one, is through.
  void rescan();

  /// Is called when a verdict that turned has held long enough to be recorded by a cycle.
  void onTurned(std::function<void()> startCycle) { startCycle_ = std::move(startCycle); }
  /// To be told of each cycle.
  void cycleBegan();
  void cycleEnded(bool isSafe);

  /// Whether somebody waits for the verdict, besides whoever made this.
  void setWaitedFor(bool isWaitedFor);

  /// To be told when the machine wakes or its clock is set.
  void wake() { proceed(); }

 private:
  class Inbox;
  struct Watching;

  Uptime now() const { return environment_.monotonicClock.sinceBoot(); }
  bool isSafeShown() const {
    const std::optional<Shared<SyncHealthReport>>& shown = report_.value();
    return shown && (*shown)->safeToClose;
  }

  // What the watch tells.
  void startWatch();
  void changed(const std::vector<FolderChange>& changes);
  void lost(const std::string& reason);
  void stands(const std::optional<std::string>& reasonAgainst);
  void proved();

  // What was told is read.
  void update();
  /// The same by the clock alone, which stalls uploads.
  void judgeAnew();
  void readBlocked();
  void takeReading(const LiveReading& reading);
  std::optional<Uptime> updateDue() const;
  std::optional<Uptime> judgingDue() const;
  std::optional<Uptime> blockedDue() const;

  // Full scans.
  void startScan();
  void finishScan(Uptime duration);
  void takeScan(const LiveReading& reading);
  void conclude(const Shared<SyncHealthReport>& report);
  /// The report that waited for the watch's proof, if one did.
  void concludeUnproved();
  std::optional<Uptime> scanDueAt() const;
  std::optional<Uptime> scanWantedAt() const;

  void publish(const Shared<SyncHealthReport>& report);
  void keep(const LiveReading& reading);
  Liveness currentLiveness() const;
  /// When the oldest change was told that the shown report does not hold; absent when it holds all.
  std::optional<Uptime> oldestUnreported() const;
  void showLiveness();
  /// Sleep counts as a loss; a clock that was set judges anew.
  void noticeClocks();
  void addLaterReadings(const std::vector<FolderChange>& changes);
  void readLater();
  /// Does all that is due, tells how live that leaves the report, and has the alarm set for what comes next.
  void proceed();
  void doWhatIsDue();
  void setAlarm();

  LiveEnvironment environment_;
  LivePace pace_;
  std::function<void()> startCycle_;
  LiveIndex index_;

  Published<std::optional<Shared<SyncHealthReport>>> report_;
  Published<Liveness> liveness_;
  std::vector<WatchFolder> folders_;

  /// Shared with the readings under way. nullptr where the system has none, or none was started.
  std::shared_ptr<FolderWatch> watch_;
  Uptime watchStarted_{0};
  /// Why changes are not told; empty while they are.
  std::string reasonAgainst_;
  /// Why everything may have changed since the last full scan began; empty while nothing did.
  std::string loss_;
  /// The loss that the full scan under way makes good.
  std::string lossMended_;
  Suspects suspects_;
  std::int64_t disagreements_ = 0;

  PendingChanges pending_;
  /// One for each answer of the index that is under way, in its order.
  std::deque<PendingChanges> inReading_;
  /// Read, but not shown before a full scan has said YES too.
  PendingChanges held_;
  /// Told since the full scan under way began.
  PendingChanges duringScan_;
  std::optional<Uptime> readingBegan_;
  std::optional<Time> nextStall_;
  Uptime blockedRead_{0};
  struct LaterReading {
    Uptime due;
    std::vector<FolderChange> changes;
  };
  std::vector<LaterReading> laterReadings_;

  /// The folders of the index, and of the full scan that is under way or was last.
  std::vector<std::string> indexed_;
  std::vector<std::string> scanned_;
  LastScan lastScan_;
  Confirmation scanBegan_;
  Uptime scanDuration_{0};
  /// As they stood when they were last looked at.
  Confirmation noticed_;
  Confirmation confirmation_;
  std::vector<TakeReport> takers_;
  std::vector<TakeReport> nextTakers_;
  /// Awaits the watch's proof that it lives, before it is shown as a YES.
  std::optional<Shared<SyncHealthReport>> unproved_;

  TurnedVerdict turned_;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
  bool awaitsStand_ = true;
  bool isScannedSinceStart_ = false;
  /// Whether the watch has missed a change, and no full scan has agreed with it since.
  bool isDoubted_ = false;
  bool hasIndex_ = false;
  /// Whether the watch has stood ever since the index was made, so that the index knows what it was told.
  bool isIndexFollowed_ = false;
  bool isScanning_ = false;
  bool isWaitedFor_ = false;
  bool wantsScan_ = false;
  bool wantsYes_ = false;
  bool hasSlept_ = false;
  bool wasSet_ = false;
  bool isProceeding_ = false;
  bool mustProceed_ = false;
};

}  // namespace cirrovane
