#include "platform/qt/QtMainExecutor.h"
#include "tests/platform_qt/EventLoop.h"

#include <QApplication>
#include <array>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

TEST(QtMainExecutor, post_runsTasksLaterAndInOrder) {
  std::vector<int> ran;
  QtMainExecutor executor;
  for (int number = 0; number < 5; ++number) {
    executor.post([&ran, number] { ran.push_back(number); });
  }
  EXPECT_THAT(ran, testing::IsEmpty());
  EXPECT_TRUE(handleEventsUntil([&ran] { return ran.size() == 5; }));
  EXPECT_THAT(ran, testing::ElementsAre(0, 1, 2, 3, 4));
}

TEST(QtMainExecutor, post_fromATask_runsAfterTheTasksThatWait) {
  std::vector<int> ran;
  QtMainExecutor executor;
  executor.post([&] {
    executor.post([&ran] { ran.push_back(3); });
    ran.push_back(1);
  });
  executor.post([&ran] { ran.push_back(2); });
  EXPECT_TRUE(handleEventsUntil([&ran] { return ran.size() == 3; }));
  EXPECT_THAT(ran, testing::ElementsAre(1, 2, 3));
}

TEST(QtMainExecutor, post_fromManyThreads_runsAllOnTheMainThreadInEachThreadsOrder) {
  constexpr int kTasks = 500;
  std::array<std::vector<int>, 4> ran;
  std::size_t count = 0;
  bool isAlwaysMain = true;
  QtMainExecutor executor;
  std::vector<std::thread> threads;
  for (std::vector<int>& own : ran) {
    threads.emplace_back([&, main = std::this_thread::get_id()] {
      for (int number = 0; number < kTasks; ++number) {
        executor.post([&, main, number] {
          own.push_back(number);
          ++count;
          isAlwaysMain = isAlwaysMain && std::this_thread::get_id() == main;
        });
      }
    });
  }
  EXPECT_TRUE(handleEventsUntil([&count] { return count == 4 * kTasks; }));
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_TRUE(isAlwaysMain);
  for (const std::vector<int>& own : ran) {
    EXPECT_TRUE(std::ranges::is_sorted(own));
  }
}

TEST(QtMainExecutor, end_dropsTheTasksThatWait) {
  bool hasRun = false;
  const auto held = std::make_shared<int>(0);
  {
    QtMainExecutor executor;
    executor.post([&hasRun, held] { hasRun = true; });
  }
  EXPECT_EQ(held.use_count(), 1);
  handleEvents();
  EXPECT_FALSE(hasRun);
}

TEST(QtMainExecutor, end_withinATask_dropsTheRest) {
  int ran = 0;
  auto executor = std::make_unique<QtMainExecutor>();
  executor->post([&] {
    ++ran;
    executor.reset();
  });
  executor->post([&ran] { ++ran; });
  EXPECT_TRUE(handleEventsUntil([&executor] { return executor == nullptr; }));
  handleEvents();
  EXPECT_EQ(ran, 1);
}

/// A task that posts another when it is dropped.
std::function<void()> taskThatPostsAtItsEnd(QtMainExecutor& executor) {
  return [last = std::shared_ptr<void>(nullptr, [&executor](void*) { executor.post([] {}); })] {};
}

TEST(QtMainExecutor, post_whenTheApplicationIsGone_drops) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        int ran = 0;
        const auto held = std::make_shared<int>(0);
        QtMainExecutor executor;
        executor.post([&ran, held] { ++ran; });
        executor.post(taskThatPostsAtItsEnd(executor));
        delete QCoreApplication::instance();
        executor.post([&ran, held] { ++ran; });
        std::thread([&executor] { executor.post([] {}); }).join();
        QtMainExecutor late;
        late.post([&ran, held] { ++ran; });
        std::_Exit(ran == 0 && held.use_count() == 1 ? 7 : 1);
      },
      testing::ExitedWithCode(7), "");
}

TEST(QtMainExecutor, post_whenTheApplicationHasQuit_drops) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        int ran = 0;
        QtMainExecutor executor;
        executor.post([&ran] {
          ++ran;
          QCoreApplication::quit();
        });
        QCoreApplication::exec();
        executor.post([&ran] { ++ran; });
        handleEvents();
        std::_Exit(ran == 1 ? 7 : 1);
      },
      testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace cirrovane::test
