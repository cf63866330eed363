// The dashboard on real threads, for the thread sanitizer as much as for the assertions.

#include "coordinator/DashboardViewModel.h"
#include "tests/coordinator/DashboardFixture.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ThreadExecutor.h"

#include <atomic>
#include <latch>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Commands that answer like another runner's, but for one that does not come back before the test lets it.
class BlockingCommandRunner final : public CommandRunner {
 public:
  BlockingCommandRunner(const CommandRunner& runner, std::string executable)
      : runner_(runner), executable_(std::move(executable)) {}

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override {
    if (executable == executable_ && !hasBlocked_.exchange(true)) {
      entered_.count_down();
      released_.wait();
    }
    return runner_.run(executable, arguments, output, limit);
  }
  bool isExecutable(const std::string& path) const override { return runner_.isExecutable(path); }

  void waitUntilBlocked() const { entered_.wait(); }
  void release() const { released_.count_down(); }

 private:
  const CommandRunner& runner_;
  std::string executable_;
  mutable std::atomic<bool> hasBlocked_ = false;
  mutable std::latch entered_{1};
  mutable std::latch released_{1};
};

struct WorkerThreads {
  ThreadExecutor scan;
  ThreadExecutor diagnostics;
  ThreadExecutor status;

  /// Waits until each has nothing more to do.
  void settle() {
    for (int round = 0; round < 2; ++round) {
      for (ThreadExecutor* executor : {&scan, &diagnostics, &status}) {
        executor->runAndWait();
      }
    }
  }
};

struct MainByHand {
  ManualExecutor main_;
  WorkerThreads workers_;
};

/// The test's own thread is the main thread; the workers have threads of their own.
class DashboardWithWorkers : protected MainByHand, public DashboardMachine {
 protected:
  DashboardWithWorkers() : DashboardMachine({main_, workers_.scan, workers_.diagnostics, workers_.status}) {}
  /// What a cycle leaves to the workers uses the machine.
  ~DashboardWithWorkers() override { workers_.settle(); }

  DashboardWithWorkers(const DashboardWithWorkers&) = delete;
  DashboardWithWorkers& operator=(const DashboardWithWorkers&) = delete;

  /// Runs so many tasks of the main thread, each as soon as it is posted.
  void runMain(int tasks) {
    for (int task = 0; task < tasks; ++task) {
      main_.waitForTask();
      main_.runOne();
    }
  }

  /// The command is one that runs after so many turns of the main thread.
  void destroyWhileBlockedIn(const std::string& executable, int turnsBefore,
                             const std::vector<std::string>& published) {
    const BlockingCommandRunner commands(commands_, executable);
    launch(commands);
    observeEverything();
    const std::vector<std::string> written = storage_.written();
    dashboard_->refresh();
    runMain(turnsBefore);
    commands.waitUntilBlocked();
    dashboard_.reset();
    commands.release();
    workers_.settle();
    main_.runAll();
    EXPECT_EQ(events_, published);
    EXPECT_EQ(storage_.written(), written);
    EXPECT_THAT(center_.calls(), IsEmpty());
  }
};

TEST_F(DashboardWithWorkers, refresh_isPublishedOnTheMainThread) {
  launch();
  const std::thread::id mainThread = std::this_thread::get_id();
  std::vector<std::thread::id> publishers;
  const Subscription subscription = dashboard_->publishedReport().observe(
      [&](const Shared<SyncHealthReport>&) { publishers.push_back(std::this_thread::get_id()); });
  dashboard_->refresh();
  runMain(3);
  EXPECT_THAT(publishers, ElementsAre(mainThread));
  EXPECT_FALSE(dashboard_->isScanning());
}

TEST_F(DashboardWithWorkers, destroyedWhileADiagnosticProbeIsBlocked_publishesNothingMore) {
  destroyWhileBlockedIn(kRoute.front(), 1, {"isScanning", "report", "verdict"});
  EXPECT_THAT(commands_.ran(), testing::Not(testing::Contains(kMemory)));
}

TEST_F(DashboardWithWorkers, destroyedWhileAStatusProbeIsBlocked_publishesNothingMore) {
  destroyWhileBlockedIn(kMemory.front(), 2, {"isScanning", "report", "verdict"});
}

TEST_F(DashboardWithWorkers, destroyedWhileABlockedProbeIsLeftBehind_returnsAtOnce) {
  const BlockingCommandRunner commands(commands_, kRoute.front());
  launch(commands);
  dashboard_->refresh();
  runMain(1);
  commands.waitUntilBlocked();
  dashboard_.reset();
  launch();
  EXPECT_FALSE(dashboard_->isScanning());
  commands.release();
  workers_.settle();
  main_.runAll();
  EXPECT_THAT(dashboard_->historyStore().snapshots(), IsEmpty());
}

TEST_F(DashboardWithWorkers, destroyedWhenThePublicationIsPosted_publishesNothing) {
  launch();
  observeEverything();
  dashboard_->refresh();
  main_.waitForTask();
  dashboard_.reset();
  main_.runAll();
  workers_.settle();
  EXPECT_THAT(events_, ElementsAre("isScanning"));
  EXPECT_THAT(center_.calls(), IsEmpty());
}

TEST_F(DashboardWithWorkers, destroyedAtAnyMoment_isSafe) {
  makeUnsafe();
  for (int round = 0; round < 100; ++round) {
    launch();
    dashboard_->refresh();
    for (int pause = 0; pause < round; ++pause) {
      std::this_thread::yield();
      main_.runOne();
    }
    dashboard_.reset();
    workers_.settle();
    main_.runAll();
  }
}

struct AllThreads {
  ThreadExecutor main_;
  WorkerThreads workers_;
};

/// All executors have threads; the test only posts.
class DashboardOnThreads : protected AllThreads, public DashboardMachine {
 protected:
  DashboardOnThreads() : DashboardMachine({main_, workers_.scan, workers_.diagnostics, workers_.status}) {}

  void SetUp() override {
    main_.runAndWait([this] { launch(); });
  }
  void TearDown() override {
    main_.runAndWait([this] { dashboard_.reset(); });
  }
};

TEST_F(DashboardOnThreads, twoHundredCyclesUnderConcurrentTicks_eachPublishOnce) {
  constexpr int kCycles = 200;
  std::atomic<int> ended = 0;
  Subscription subscription;
  main_.runAndWait([&] {
    subscription = dashboard_->publishedIsScanning().observe([&](bool next) { ended += next ? 0 : 1; });
    dashboard_->surfaceAppeared();
  });

  const auto tickUntilDone = [&] {
    while (ended < kCycles) {
      main_.runAndWait([&] {
        if (ended < kCycles) {
          timer_.tick();
          center_.answerAll();
        }
      });
    }
  };
  std::thread other(tickUntilDone);
  // Meanwhile a packet, whose report is shared with the cycles, is read on this thread.
  while (ended < kCycles) {
    ProofPacket packet;
    main_.runAndWait([&] { packet = dashboard_->cycle().proofPacket(); });
    EXPECT_LE(packet.report->blockers.size(), 1U);
    EXPECT_LE(packet.history.size(), ProofPacket::kMaximumHistory);
  }
  other.join();

  main_.runAndWait([&] {
    EXPECT_EQ(ended, kCycles);
    EXPECT_FALSE(dashboard_->isScanning());
    EXPECT_THAT(dashboard_->historyStore().snapshots(), SizeIs(kCycles));
    EXPECT_THAT(files_.enumerated(), SizeIs(kCycles));
  });
}

}  // namespace
}  // namespace cirrovane::test
