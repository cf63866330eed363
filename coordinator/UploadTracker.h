#pragma once

#include "base/Published.h"
#include "base/Shared.h"
#include "coordinator/UploadShare.h"
#include "coordinator/UploadStanding.h"
#include "platform/Alarm.h"
#include "platform/Clock.h"
#include "platform/Executor.h"
#include "stores/UploadsStore.h"

#include <chrono>
#include <memory>
#include <optional>

namespace cirrovane {

/// What a tracker needs of the machine; outlives it and all work that it has under way.
struct UploadTracking {
  Executor& main;
  /// Where files are asked and the record is kept.
  Executor& looking;
  const Clock& clock;
  const MonotonicClock& monotonicClock;
  /// nullptr where nobody looks on between two refreshes.
  Alarm* alarm = nullptr;
};

/// How uploads go from report to report, and remembers it. Main thread only; it may be destroyed at any time.
class UploadTracker {
 public:
  /// Reports may come many in a second, and a look reads and writes a file.
  static constexpr std::chrono::seconds kBetweenLooks{5};

  /// Does nothing without a store. The reports outlive it.
  UploadTracker(std::shared_ptr<const UploadsStore> store, const Published<Shared<SyncHealthReport>>& reports,
                const UploadTracking& environment);
  ~UploadTracker();

  UploadTracker(const UploadTracker&) = delete;
  UploadTracker& operator=(const UploadTracker&) = delete;

  /// Told anew as well where only time has gone by and the words of it are others.
  const Published<UploadStanding>& standing() const { return standing_; }
  /// What is remembered of each file, as the latest look left it; told before the standing.
  const Published<Shared<UploadRecord>>& record() const { return record_; }

  /// Takes in what a refresh's report says is pending.
  void look(const Shared<SyncHealthReport>& report);
  /// Takes in the latest report, some seconds after the look before.
  void lookSoon();

 private:
  struct Found;

  void take(Found found);
  void setAlarm();
  void ring();

  std::shared_ptr<const UploadsStore> store_;
  const Published<Shared<SyncHealthReport>>& reports_;
  UploadTracking environment_;
  Published<UploadStanding> standing_;
  Published<Shared<UploadRecord>> record_;
  UploadShare share_;
  /// Absent before the first.
  std::optional<std::chrono::nanoseconds> lastLook_;
  /// Whether a look waits for its turn.
  bool wantsLook_ = false;
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
