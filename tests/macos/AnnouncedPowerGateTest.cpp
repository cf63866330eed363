#include "platform/macos/plain/AnnouncedPowerGate.h"
#include "platform/macos/plain/SystemQuit.h"
#include "tests/macos/ManualSerialQueue.h"
#include "tests/support/NotedPower.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// Counts what lives.
template <class Kind>
class Living final : public Kind {
 public:
  explicit Living(int& count) : count_(count) { ++count_; }
  ~Living() override { --count_; }
  Living(const Living&) = delete;
  Living& operator=(const Living&) = delete;

 private:
  int& count_;
};

class AnnouncedPowerGateTest : public testing::Test {
 protected:
  AnnouncedPowerGate& gate(bool isApplication = true) {
    PowerSystem system;
    system.hearSleep = [this](PowerSystem::SleepTold tell) -> std::unique_ptr<PowerNotices> {
      if (refuses_) {
        return nullptr;
      }
      tellSleep_ = std::move(tell);
      return std::make_unique<Living<PowerNotices>>(notices_);
    };
    if (isApplication) {
      system.hearQuits = [this](PowerSystem::QuitAsked ask) {
        askQuit_ = std::move(ask);
        return std::make_unique<Living<PowerNotices>>(notices_);
      };
    }
    system.keepAwake = [this](const std::string& reason) -> Result<std::unique_ptr<PowerHold>> {
      reasons_.push_back(reason);
      return std::unique_ptr<PowerHold>(std::make_unique<Living<PowerHold>>(holds_));
    };
    system.perform = [this](PowerAct act) {
      acts_.push_back(act);
      return error_;
    };
    gate_ = std::make_unique<AnnouncedPowerGate>(news_, system, queue_);
    return *gate_;
  }
  AnnouncedPowerGate& started() {
    AnnouncedPowerGate& gate = this->gate();
    gate.start();
    queue_->run();
    EXPECT_THAT(news_.take(), ElementsAre("stands"));
    return gate;
  }
  void announce(std::uint32_t message) {
    tellSleep_(message, [this] { ++answers_; });
    queue_->run();
  }
  bool quit() {
    const bool waits = askQuit_([this] { ++answers_; });
    queue_->run();
    return waits;
  }

  std::shared_ptr<ManualSerialQueue> queue_ = std::make_shared<ManualSerialQueue>();
  NotedPower news_;
  bool refuses_ = false;
  PowerSystem::SleepTold tellSleep_;
  PowerSystem::QuitAsked askQuit_;
  int notices_ = 0;
  int holds_ = 0;
  int answers_ = 0;
  std::int32_t error_ = 0;
  std::vector<std::string> reasons_;
  std::vector<PowerAct> acts_;
  std::unique_ptr<AnnouncedPowerGate> gate_;
};

TEST_F(AnnouncedPowerGateTest, start_refused_isSaid) {
  refuses_ = true;
  gate().start();
  queue_->run();
  EXPECT_THAT(news_.take(), ElementsAre("against: The system does not tell Cirrovane before it sleeps."));
}

TEST_F(AnnouncedPowerGateTest, start_ofAProgramWithoutWindows_hearsOfSleepAlone) {
  gate(/*isApplication=*/false).start();
  queue_->run();
  EXPECT_THAT(news_.take(), ElementsAre("stands"));
  EXPECT_EQ(notices_, 1);
}

TEST_F(AnnouncedPowerGateTest, start_twice_hearsOnce) {
  started().start();
  queue_->run();
  EXPECT_EQ(notices_, 2);
  EXPECT_THAT(news_.take(), IsEmpty());
}

TEST_F(AnnouncedPowerGateTest, sleep_waitsUntilTheGateLetsGo) {
  AnnouncedPowerGate& gate = started();
  announce(power_message::willSleep);
  EXPECT_THAT(news_.take(), ElementsAre("leaving: sleep within 28000"));
  EXPECT_EQ(answers_, 0);
  gate.letGo();
  queue_->run();
  EXPECT_EQ(answers_, 1);
  announce(power_message::hasPoweredOn);
  EXPECT_THAT(news_.take(), ElementsAre("stays: sleep"));
  queue_->advance(seconds(60));
  EXPECT_EQ(answers_, 1);
}

TEST_F(AnnouncedPowerGateTest, sleep_notLetGo_isAnsweredBeforeTheSystemsThirtySeconds) {
  started();
  announce(power_message::willSleep);
  queue_->advance(seconds(27));
  EXPECT_EQ(answers_, 0);
  queue_->advance(seconds(1));
  EXPECT_EQ(answers_, 1);
}

TEST_F(AnnouncedPowerGateTest, letGoOfOneSleep_doesNotAnswerTheNext) {
  AnnouncedPowerGate& gate = started();
  announce(power_message::willSleep);
  queue_->advance(seconds(10));
  gate.letGo();
  queue_->run();
  announce(power_message::willSleep);
  queue_->advance(seconds(20));
  EXPECT_EQ(answers_, 1);
  queue_->advance(seconds(8));
  EXPECT_EQ(answers_, 2);
}

TEST_F(AnnouncedPowerGateTest, idleSleep_askedFor_isNeverRefusedAndAnsweredAtOnce) {
  started();
  tellSleep_(power_message::canSleep, [this] { ++answers_; });
  EXPECT_EQ(answers_, 1);
  queue_->run();
  EXPECT_THAT(news_.take(), IsEmpty());
}

TEST_F(AnnouncedPowerGateTest, sleep_calledOff_isTold) {
  started();
  announce(power_message::willNotSleep);
  EXPECT_THAT(news_.take(), ElementsAre("stays: sleep"));
}

TEST_F(AnnouncedPowerGateTest, messageOfAnotherKind_isPassedOver) {
  started();
  announce(0xE0000320);
  EXPECT_THAT(news_.take(), IsEmpty());
  EXPECT_EQ(answers_, 0);
}

TEST_F(AnnouncedPowerGateTest, quitOfTheSystem_waitsUntilTheGateLetsGo) {
  AnnouncedPowerGate& gate = started();
  EXPECT_TRUE(quit());
  EXPECT_THAT(news_.take(), ElementsAre("leaving: shutdown within 38000"));
  EXPECT_EQ(answers_, 0);
  gate.letGo();
  queue_->run();
  EXPECT_EQ(answers_, 1);
}

TEST_F(AnnouncedPowerGateTest, quitOfTheSystem_notLetGo_isAnsweredWithinFortySeconds) {
  started();
  EXPECT_TRUE(quit());
  queue_->advance(seconds(37));
  EXPECT_EQ(answers_, 0);
  queue_->advance(seconds(2));
  EXPECT_EQ(answers_, 1);
}

TEST_F(AnnouncedPowerGateTest, sleepAndQuitTogether_areBothAnswered) {
  AnnouncedPowerGate& gate = started();
  announce(power_message::willSleep);
  EXPECT_TRUE(quit());
  gate.letGo();
  queue_->run();
  EXPECT_EQ(answers_, 2);
}

TEST_F(AnnouncedPowerGateTest, letGo_whereNothingWaits_doesNothing) {
  started().letGo();
  queue_->run();
  EXPECT_EQ(answers_, 0);
}

TEST_F(AnnouncedPowerGateTest, end_answersEverything_andHearsNothingMore) {
  started();
  announce(power_message::willSleep);
  EXPECT_TRUE(quit());
  static_cast<void>(news_.take());
  gate_.reset();
  EXPECT_EQ(answers_, 2);
  EXPECT_EQ(notices_, 0);
  // What was on its way meanwhile.
  announce(power_message::willSleep);
  EXPECT_FALSE(quit());
  EXPECT_EQ(answers_, 4);
  EXPECT_THAT(news_.take(), IsEmpty());
}

TEST_F(AnnouncedPowerGateTest, keepAwake_holdsForAsLongAsTheHoldLives) {
  auto hold = gate().keepAwake("Uploading 3 files");
  ASSERT_TRUE(hold);
  EXPECT_THAT(reasons_, ElementsAre("Uploading 3 files"));
  gate_.reset();
  EXPECT_EQ(holds_, 1);
  hold->reset();
  EXPECT_EQ(holds_, 0);
}

TEST_F(AnnouncedPowerGateTest, perform_agreed_isDoneOnce) {
  EXPECT_EQ(gate().perform(PowerAct::sleep), std::nullopt);
  EXPECT_THAT(acts_, ElementsAre(PowerAct::sleep));
}

TEST_F(AnnouncedPowerGateTest, perform_refused_failsInWordsForPeople) {
  error_ = -1743;
  EXPECT_EQ(gate().perform(PowerAct::sleep)->message,
            "The system does not let Cirrovane put this Mac to sleep: see System Settings, Privacy & Security, "
            "Automation.");
  error_ = -600;
  EXPECT_EQ(gate().perform(PowerAct::shutdown)->message, "The system refuses to shut this Mac down (error -600).");
}

TEST(SystemQuit, reasonsOfTheSystem_areToldFromTheUsersOwnQuit) {
  for (const std::uint32_t reason : {0x6C6F676FU, 0x726C676FU, 0x72657374U, 0x72727374U, 0x73687574U, 0x7273646EU}) {
    EXPECT_TRUE(isSystemQuit(reason)) << reason;
  }
  EXPECT_FALSE(isSystemQuit(std::nullopt));
  EXPECT_FALSE(isSystemQuit(0));
  EXPECT_FALSE(isSystemQuit(fourCharacterCode("quia")));
}

}  // namespace
}  // namespace cirrovane::test
