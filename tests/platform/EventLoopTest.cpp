#include "base/FileDescriptor.h"
#include "platform/Clock.h"
#include "platform/posix/EventLoop.h"

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class EventLoopTest : public testing::Test {
 protected:
  SystemMonotonicClock clock_;
  EventLoop loop_{clock_};
};

TEST_F(EventLoopTest, postedTasks_runInOrder_andWhatFollowsTheEndIsDropped) {
  std::vector<int> ran;
  loop_.post([&] { ran.push_back(1); });
  loop_.post([&] {
    loop_.post([&] { ran.push_back(3); });
    ran.push_back(2);
  });
  loop_.post([&] { loop_.post([&] { loop_.quit(); }); });
  loop_.run();
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
  loop_.post([&] { ran.push_back(4); });
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST_F(EventLoopTest, taskOfAnotherThread_wakesTheLoop) {
  std::thread other([this] { loop_.post([this] { loop_.quit(); }); });
  loop_.run();
  other.join();
}

TEST_F(EventLoopTest, alarm_ringsOnceAndNotBeforeItsTime) {
  const std::unique_ptr<Alarm> alarm = loop_.makeAlarm();
  const std::unique_ptr<Alarm> later = loop_.makeAlarm();
  const auto begin = clock_.sinceBoot();
  int rings = 0;
  alarm->set(20ms, [&] { ++rings; });
  later->set(40ms, [&] { loop_.quit(); });
  loop_.run();
  EXPECT_EQ(rings, 1);
  EXPECT_GE(clock_.sinceBoot() - begin, 40ms);
}

TEST_F(EventLoopTest, alarmThatIsSetAgain_ringsForTheLastTimeAlone_andAClearedOneNever) {
  const std::unique_ptr<Alarm> alarm = loop_.makeAlarm();
  const std::unique_ptr<Alarm> cleared = loop_.makeAlarm();
  std::string rung;
  cleared->set(0ms, [&] { rung += "cleared"; });
  cleared->clear();
  alarm->set(0ms, [&] { rung += "first"; });
  alarm->set(10ms, [&] {
    rung += "second";
    loop_.quit();
  });
  loop_.run();
  EXPECT_EQ(rung, "second");
}

TEST_F(EventLoopTest, alarmThatSetsItselfAtOnce_doesNotHoldUpTasks) {
  const std::unique_ptr<Alarm> alarm = loop_.makeAlarm();
  int rings = 0;
  std::function<void()> again = [&] {
    if (++rings == 100) {
      loop_.post([this] { loop_.quit(); });
    }
    alarm->set(0ms, again);
  };
  alarm->set(0ms, again);
  loop_.run();
  EXPECT_GE(rings, 100);
}

TEST_F(EventLoopTest, wakingOfTheMachine_ringsAlarmsThatAreSet) {
  const std::unique_ptr<Alarm> alarm = loop_.makeAlarm();
  const std::unique_ptr<Alarm> unset = loop_.makeAlarm();
  int rings = 0;
  alarm->set(1h, [&] { ++rings; });
  loop_.ringAlarms();
  loop_.ringAlarms();
  EXPECT_EQ(rings, 1);
}

TEST_F(EventLoopTest, descriptor_isToldWhenItCanBeReadAndWhenItsReaderIsGone) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  FileDescriptor reader(ends[0]);
  const FileDescriptor writer(ends[1]);
  std::string told;
  loop_.watchForClosing(writer.get(), [&] {
    told += " closed";
    loop_.quit();
  });
  loop_.watchDescriptor(reader.get(), [&] {
    char byte = 0;
    ASSERT_EQ(read(reader.get(), &byte, 1), 1);
    told += byte;
    loop_.post([&] { reader = FileDescriptor(); });
  });
  ASSERT_EQ(write(writer.get(), "x", 1), 1);
  loop_.run();
  EXPECT_EQ(told, "x closed");
}

TEST_F(EventLoopTest, signal_endsTheLoopWhileItIsAskedTo) {
  for (const int signal : {SIGINT, SIGTERM}) {
    EventLoop loop(clock_);
    const QuitOnSignals quits(loop);
    loop.post([signal] { raise(signal); });
    loop.run();
  }
  struct sigaction action {};
  ASSERT_EQ(sigaction(SIGINT, nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
}

}  // namespace
}  // namespace cirrovane::test
