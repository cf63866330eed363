#include "platform/posix/ThreadExecutor.h"

#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

/// Waits for all tasks posted so far.
void waitForTasks(ThreadExecutor& executor) {
  std::promise<void> done;
  executor.post([&done] { done.set_value(); });
  done.get_future().wait();
}

/// Something that a task can hold, and whose end can be waited for.
struct Held {
  std::promise<void> ended;
  std::shared_ptr<void> handle{nullptr, [this](void*) { ended.set_value(); }};
};

TEST(ThreadExecutor, post_runsTasksInOrderOnOneOtherThread) {
  std::vector<int> ran;
  std::vector<std::thread::id> threads;
  ThreadExecutor executor;
  for (int number = 0; number < 5; ++number) {
    executor.post([&, number] {
      ran.push_back(number);
      threads.push_back(std::this_thread::get_id());
    });
  }
  waitForTasks(executor);
  EXPECT_THAT(ran, testing::ElementsAre(0, 1, 2, 3, 4));
  EXPECT_THAT(threads, testing::Each(testing::AllOf(threads.front(), testing::Ne(std::this_thread::get_id()))));
}

TEST(ThreadExecutor, post_fromManyThreads_runsEachTaskOnceInEachThreadsOrder) {
  constexpr int kTasks = 500;
  std::array<std::vector<int>, 4> ran;
  ThreadExecutor executor;
  {
    std::vector<std::thread> threads;
    for (std::vector<int>& own : ran) {
      threads.emplace_back([&executor, &own] {
        for (int number = 0; number < kTasks; ++number) {
          executor.post([&own, number] { own.push_back(number); });
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  }
  waitForTasks(executor);
  for (const std::vector<int>& own : ran) {
    EXPECT_EQ(own.size(), kTasks);
    EXPECT_TRUE(std::ranges::is_sorted(own));
  }
}

TEST(ThreadExecutor, post_fromATask_runs) {
  std::promise<void> done;
  ThreadExecutor executor;
  executor.post([&] { executor.post([&done] { done.set_value(); }); });
  done.get_future().wait();
}

TEST(ThreadExecutor, isBusy_isTrueWhileATaskRunsOrWaits) {
  std::promise<void> begun;
  std::promise<void> release;
  ThreadExecutor executor;
  EXPECT_FALSE(executor.isBusy());
  executor.post([&] {
    begun.set_value();
    release.get_future().wait();
  });
  EXPECT_TRUE(executor.isBusy());
  begun.get_future().wait();
  EXPECT_TRUE(executor.isBusy());
  release.set_value();
  while (executor.isBusy()) {
    std::this_thread::yield();
  }
}

TEST(ThreadExecutor, end_whileATaskBlocks_waitsForNothingAndDropsTheRest) {
  Held running;
  Held waiting;
  std::promise<void> begun;
  const auto release = std::make_shared<std::promise<void>>();
  auto executor = std::make_unique<ThreadExecutor>();
  executor->post([&begun, release, handle = std::move(running.handle)] {
    begun.set_value();
    release->get_future().wait();
  });
  executor->post([handle = std::move(waiting.handle)] { FAIL() << "This task had not begun."; });
  begun.get_future().wait();

  // Would hang here for ever if it waited.
  executor.reset();
  EXPECT_EQ(waiting.ended.get_future().wait_for(std::chrono::seconds(0)), std::future_status::ready);
  auto runningEnded = running.ended.get_future();
  EXPECT_EQ(runningEnded.wait_for(std::chrono::seconds(0)), std::future_status::timeout);

  release->set_value();
  runningEnded.wait();
}

TEST(ThreadExecutor, end_withinItsOwnTask_isHarmless) {
  std::promise<void> done;
  auto executor = std::make_shared<ThreadExecutor>();
  ThreadExecutor& posting = *executor;
  std::promise<void> handedOver;
  posting.post([&done, &handedOver, executor]() mutable {
    handedOver.get_future().wait();
    executor.reset();
    done.set_value();
  });
  executor.reset();
  handedOver.set_value();
  done.get_future().wait();
}

}  // namespace
}  // namespace cirrovane::test
