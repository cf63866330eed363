#pragma once

#include "coordinator/LiveVerdict.h"
#include "tests/coordinator/Builders.h"
#include "tests/support/FakeFolderWatch.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ManualMonotonicClock.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {

/// A live verdict over a tree in memory and a watch that a test plays, step by step.
class LiveTest : public testing::Test {
 protected:
  LiveTest() {
    std::string path;
    for (const char* name : {"Users", "test", "Library", "Mobile Documents", "com~apple~CloudDocs", "Work"}) {
      path.append("/").append(name);
      tree_.makeFolder(path);
    }
    tree_.makeFile(kFile, values(true));
  }

  static FakeValues values(bool isUploaded) {
    FakeValues values;
    values.isUploaded = isUploaded;
    values.downloadingStatus = DownloadingStatus::current;
    values.contentModificationDate = at(18, 20);
    return values;
  }

  /// Makes the verdict and has it follow the one folder up to its first report.
  void begin(LivePace pace = {.isWaiting = true, .interval = std::nullopt}) {
    make(pace);
    live_->follow({folder_});
    runAll();
  }
  void make(LivePace pace) {
    live_ = std::make_unique<LiveVerdict>(ScanSource{tree_, clock_},
                                          LiveEnvironment{{main_, scan_, updates_},
                                                          clock_,
                                                          uptime_,
                                                          alarm_,
                                                          [this](FolderWatchListener& listener) {
                                                            auto watch = std::make_unique<FakeFolderWatch>(listener);
                                                            watch->reasonAgainst = reasonAgainst_;
                                                            watch->later = later_;
                                                            watch->standsAtOnce = standsAtOnce_;
                                                            watch_ = watch.get();
                                                            return watch;
                                                          }},
                                          pace);
  }

  void runAll() {
    while (scan_.runOne() || updates_.runOne() || main_.runOne()) {
    }
  }
  /// Time goes by, and what is due then is done.
  void pass(std::chrono::nanoseconds time) {
    uptime_.advance(time);
    clock_.advance(std::chrono::duration_cast<std::chrono::microseconds>(time));
    alarm_.ring();
    runAll();
  }
  /// The file's state changes and the watch tells of it; nothing is read yet.
  void change(bool isUploaded) {
    tree_.setValues(kFile, values(isUploaded));
    watch_->tell(kWork, "a.txt");
  }
  void changeAndRun(bool isUploaded) {
    change(isUploaded);
    runAll();
  }

  const SyncHealthReport& report() const { return **live_->report().value(); }
  bool isSafe() const { return report().safeToClose; }
  LivenessState state() const { return live_->liveness().value().state; }
  std::string reason() const { return live_->liveness().value().reason; }

  const std::string kWork = std::string(kDrive) + "/Work";
  const std::string kFile = kWork + "/a.txt";
  const WatchFolder folder_ = makeFolder("Work", kWork);
  FakeTree tree_;
  ManualClock clock_{at(18, 25)};
  ManualMonotonicClock uptime_;
  ManualAlarm alarm_;
  ManualExecutor main_;
  ManualExecutor scan_;
  ManualExecutor updates_;
  std::optional<std::string> reasonAgainst_;
  std::vector<std::chrono::seconds> later_;
  bool standsAtOnce_ = true;
  FakeFolderWatch* watch_ = nullptr;
  std::unique_ptr<LiveVerdict> live_;
};

}  // namespace cirrovane::test
