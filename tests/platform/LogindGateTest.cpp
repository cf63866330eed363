#include "platform/linux/host/LogindGate.h"
#include "platform/posix/PosixCommandRunner.h"
#include "tests/platform/LoginService.h"
#include "tests/support/NotedPower.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <sys/stat.h>
#include <systemd/sd-bus.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

constexpr const char* kTookDelay =
    "took sleep:shutdown Cirrovane Looks whether work is still on its way to iCloud Drive delay";
constexpr const char* kTookHold = "took idle Cirrovane Uploading 3 files block";
constexpr const char* kSilence = "The system's login service does not answer.";
constexpr const char* kNoBus = "The system's message bus cannot be reached.";

/// Asks so soon again that a test need not wait.
constexpr LogindGate::Times kImpatient = {.answer = 200ms, .retry = 20ms};

class LogindGateTest : public testing::Test {
 protected:
  void TearDown() override {
    // It hears of no service's end.
    gate_.reset();
  }

  LogindGate& gate(LogindGate::Times times = {}) {
    gate_ = std::make_unique<LogindGate>(news_, times);
    return *gate_;
  }
  /// A gate that stands, at a service that has just told of its lock.
  LogindGate& standing(LoginService& service) {
    LogindGate& gate = this->gate();
    gate.start();
    EXPECT_EQ(news_.next(), "stands");
    EXPECT_EQ(service.next(), kTookDelay);
    return gate;
  }

  OwnSystemBus bus_;
  NotedPower news_;
  std::unique_ptr<LogindGate> gate_;
};

TEST_F(LogindGateTest, start_takesTheLockAndStands) {
  LoginService service;
  standing(service);
}

TEST_F(LogindGateTest, gate_notStarted_takesNothing) {
  LoginService service;
  gate().letGo();
  service.announce("sleep");
  EXPECT_EQ(service.next(), "asleep");
}

TEST_F(LogindGateTest, end_releasesTheLock) {
  LoginService service;
  standing(service);
  gate_.reset();
  EXPECT_EQ(service.next(), "released sleep:shutdown");
}

TEST_F(LogindGateTest, sleep_waitsUntilTheGateLetsGo_andTheLockIsTakenAnewAfterIt) {
  LoginService service;
  LogindGate& gate = standing(service);
  service.announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 5000");
  gate.letGo();
  EXPECT_EQ(service.next(), "released sleep:shutdown");
  EXPECT_EQ(service.next(), "asleep");
  service.stay();
  EXPECT_EQ(news_.next(), "stays: sleep");
  EXPECT_EQ(service.next(), kTookDelay);
  service.announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 5000");
  gate.letGo();
  EXPECT_EQ(service.next(), "released sleep:shutdown");
  EXPECT_EQ(service.next(), "asleep");
}

TEST_F(LogindGateTest, sleep_notLetGoInTime_comesAllTheSameAndTheLockIsKept) {
  LoginService service(R"({"InhibitDelayMaxUSec": 50000})");
  LogindGate& gate = standing(service);
  service.announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 50");
  EXPECT_EQ(service.next(), "asleep");
  service.stay();
  EXPECT_EQ(news_.next(), "stays: sleep");
  // Nothing waits any more.
  gate.letGo();
  ASSERT_TRUE(gate.keepAwake("Uploading 3 files"));
  EXPECT_EQ(service.next(), kTookHold);
  EXPECT_EQ(service.next(), "released idle");
}

TEST_F(LogindGateTest, shutdown_calledOff_isWaitedForAgainTheNextTime) {
  LoginService service;
  LogindGate& gate = standing(service);
  service.announce("shutdown");
  EXPECT_EQ(news_.next(), "leaving: shutdown within 5000");
  service.stay();
  EXPECT_EQ(news_.next(), "stays: shutdown");
  service.announce("shutdown");
  EXPECT_EQ(news_.next(), "leaving: shutdown within 5000");
  gate.letGo();
  EXPECT_EQ(service.next(), "released sleep:shutdown");
  EXPECT_EQ(service.next(), "off");
}

TEST_F(LogindGateTest, letGo_whereNothingWaits_keepsTheLock) {
  LoginService service;
  LogindGate& gate = standing(service);
  gate.letGo();
  service.announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 5000");
  gate.letGo();
  EXPECT_EQ(service.next(), "released sleep:shutdown");
  EXPECT_EQ(service.next(), "asleep");
}

TEST_F(LogindGateTest, keepAwake_holdsByNameAndReasonUntilTheHoldEnds) {
  LoginService service;
  auto hold = gate().keepAwake("Uploading 3 files");
  ASSERT_TRUE(hold);
  EXPECT_EQ(service.next(), kTookHold);
  hold->reset();
  EXPECT_EQ(service.next(), "released idle");
}

TEST_F(LogindGateTest, keepAwake_reasonWithAnyBytes_isWrittenOut) {
  LoginService service;
  const auto hold = gate().keepAwake("Uploading \xff\n1");
  ASSERT_TRUE(hold);
  EXPECT_EQ(service.next(), "took idle Cirrovane Uploading \\xff\\n1 block");
}

TEST_F(LogindGateTest, hold_outlivesTheGate) {
  LoginService service;
  auto hold = gate().keepAwake("Uploading 3 files");
  ASSERT_TRUE(hold);
  EXPECT_EQ(service.next(), kTookHold);
  gate_.reset();
  service.settle();
  EXPECT_EQ(service.heard().back(), kTookHold);
  hold->reset();
  EXPECT_EQ(service.next(), "released idle");
}

TEST_F(LogindGateTest, perform_sleep_suspendsOnceAndAsksNobody) {
  LoginService service;
  EXPECT_EQ(gate().perform(PowerAct::sleep), std::nullopt);
  EXPECT_EQ(service.next(), "Suspend quiet");
  EXPECT_EQ(service.next(), "asleep");
  service.settle();
  EXPECT_EQ(service.heard().back(), "asleep");
}

TEST_F(LogindGateTest, perform_ofAGateThatIsWaitedFor_isAnnouncedToIt) {
  LoginService service;
  LogindGate& gate = standing(service);
  EXPECT_EQ(gate.perform(PowerAct::shutdown), std::nullopt);
  EXPECT_EQ(service.next(), "PowerOff quiet");
  EXPECT_EQ(news_.next(), "leaving: shutdown within 5000");
  gate.letGo();
  EXPECT_EQ(service.next(), "released sleep:shutdown");
  EXPECT_EQ(service.next(), "off");
}

TEST_F(LogindGateTest, perform_denied_failsInWordsForPeople) {
  LoginService service;
  LogindGate& gate = this->gate();
  const auto failureWith = [&](const std::string& kind) {
    service.answer("Suspend", kind);
    const auto failure = gate.perform(PowerAct::sleep);
    return failure ? failure->message : "";
  };
  EXPECT_EQ(failureWith("denied"), "The system does not allow it.");
  EXPECT_EQ(failureWith("password"), "The system asks for an administrator's password for that.");
  EXPECT_EQ(failureWith("odd"), "The system refuses it: Sleep verb 'suspend' is\\nnot supported.");
}

TEST_F(LogindGateTest, locks_denied_areSaid) {
  LoginService service;
  service.answer("Inhibit", "denied");
  LogindGate& gate = this->gate();
  gate.start();
  EXPECT_EQ(news_.next(), "against: The system does not allow it.");
  const auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_FALSE(hold);
  EXPECT_EQ(hold.message(), "The system does not allow it.");
  // The machine does not wait, but still tells.
  service.announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 0");
  EXPECT_EQ(service.next(), "asleep");
}

TEST_F(LogindGateTest, lock_deniedAtFirst_isAskedForAfterTheNextSleep) {
  LoginService service;
  service.answer("Inhibit", "denied");
  gate().start();
  EXPECT_EQ(news_.next(), "against: The system does not allow it.");
  service.announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 0");
  EXPECT_EQ(service.next(), "asleep");
  service.answer("Inhibit", "yes");
  service.stay();
  EXPECT_EQ(news_.next(), "stays: sleep");
  EXPECT_EQ(news_.next(), "stands");
  EXPECT_EQ(service.next(), kTookDelay);
}

TEST_F(LogindGateTest, start_whileTheMachineLeaves_isWaitedForOnceItStays) {
  LoginService service;
  service.announce("sleep");
  EXPECT_EQ(service.next(), "asleep");
  gate().start();
  EXPECT_EQ(news_.next(), "against: The system refuses it: The operation is in progress.");
  service.stay();
  EXPECT_EQ(news_.next(), "stays: sleep");
  EXPECT_EQ(news_.next(), "stands");
}

TEST_F(LogindGateTest, service_thatDoesNotAnswer_failsInTime) {
  LoginService service;
  for (const char* const method : {"Inhibit", "Suspend"}) {
    service.answer(method, "silent");
  }
  LogindGate& gate = this->gate({.answer = 100ms, .retry = 1h});
  gate.start();
  EXPECT_EQ(news_.next(), std::string("against: ") + kSilence);
  const auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_FALSE(hold);
  EXPECT_EQ(hold.message(), kSilence);
  EXPECT_EQ(gate.perform(PowerAct::sleep), Failure{kSilence});
}

TEST_F(LogindGateTest, service_thatWasSilent_isAskedAgain) {
  LoginService service;
  service.answer("Inhibit", "silent");
  gate(kImpatient).start();
  EXPECT_EQ(news_.next(), std::string("against: ") + kSilence);
  service.answer("Inhibit", "yes");
  EXPECT_EQ(news_.next(), "stands");
}

TEST_F(LogindGateTest, service_missing_isSaidAndTakenWhenItComes) {
  LogindGate& gate = this->gate();
  gate.start();
  EXPECT_EQ(news_.next(), "against: This system has no login service (logind).");
  const auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_FALSE(hold);
  EXPECT_EQ(hold.message(), "This system has no login service (logind).");
  EXPECT_EQ(gate.perform(PowerAct::shutdown), Failure{"This system has no login service (logind)."});
  LoginService service;
  EXPECT_EQ(news_.next(), "stands");
}

TEST_F(LogindGateTest, service_startedAnew_hasItsLocksAgain) {
  std::optional<LoginService> service(std::in_place);
  LogindGate& gate = standing(*service);
  auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_TRUE(hold);
  auto ended = gate.keepAwake("Done");
  ASSERT_TRUE(ended);
  ended->reset();
  service.reset();
  EXPECT_EQ(news_.next(), "against: The system's login service has gone.");
  service.emplace();
  EXPECT_EQ(news_.next(), "stands");
  EXPECT_EQ(service->next(), kTookDelay);
  EXPECT_EQ(service->next(), kTookHold);
  hold->reset();
  EXPECT_EQ(service->next(), "released idle");
  service->announce("sleep");
  EXPECT_EQ(news_.next(), "leaving: sleep within 5000");
}

TEST_F(LogindGateTest, service_thatForgetsWhatItAnnounced_letsTheMachineStay) {
  std::optional<LoginService> service(std::in_place);
  standing(*service);
  service->announce("shutdown");
  EXPECT_EQ(news_.next(), "leaving: shutdown within 5000");
  service.reset();
  EXPECT_EQ(news_.next(), "against: The system's login service has gone.");
  service.emplace();
  EXPECT_EQ(news_.next(), "stays: shutdown");
  EXPECT_EQ(news_.next(), "stands");
}

TEST_F(LogindGateTest, bus_missing_isSaid) {
  bus_.kill();
  LogindGate& gate = this->gate();
  gate.start();
  EXPECT_EQ(news_.next(), std::string("against: ") + kNoBus);
  const auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_FALSE(hold);
  EXPECT_EQ(hold.message(), kNoBus);
  EXPECT_EQ(gate.perform(PowerAct::sleep), Failure{kNoBus});
}

TEST_F(LogindGateTest, bus_thatComesLater_isUsedByTheNextCall) {
  bus_.kill();
  LogindGate& gate = this->gate();
  gate.start();
  EXPECT_EQ(news_.next(), std::string("against: ") + kNoBus);
  bus_.start();
  LoginService service;
  EXPECT_EQ(gate.perform(PowerAct::sleep), std::nullopt);
  EXPECT_EQ(news_.next(), "stands");
}

TEST_F(LogindGateTest, bus_lost_isSaidAndLookedForAgain) {
  std::optional<LoginService> service(std::in_place);
  LogindGate& gate = this->gate(kImpatient);
  gate.start();
  EXPECT_EQ(news_.next(), "stands");
  const auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_TRUE(hold);
  bus_.kill();
  EXPECT_EQ(news_.next(), "against: The system's message bus has gone.");
  service.reset();
  bus_.start();
  service.emplace();
  // It may have come back before the service did.
  std::string line = news_.next();
  while (line != "stands") {
    EXPECT_EQ(line, "against: This system has no login service (logind).");
    line = news_.next();
  }
  const std::set<std::string> taken = {service->next(), service->next()};
  EXPECT_EQ(taken, (std::set<std::string>{kTookDelay, kTookHold}));
}

TEST_F(LogindGateTest, locks_areInheritedByNoChild) {
  LoginService service;
  LogindGate& gate = standing(service);
  const auto hold = gate.keepAwake("Uploading 3 files");
  ASSERT_TRUE(hold);
  const auto shown = PosixCommandRunner().run("/bin/sh", {"-c", "echo /proc/$$/fd/*"}, CommandOutput::collected, {});
  ASSERT_TRUE(shown);
  // The standard streams, and the folder that the shell lists.
  EXPECT_THAT(shown->output, HasSubstr("/fd/0 "));
  EXPECT_EQ(std::ranges::count(shown->output, ' '), 3) << shown->output;
}

TEST_F(LogindGateTest, program_killed_leavesNoLock) {
  LoginService service;
  Watching probe(CIRROVANE_BIN_DIR "/power_gate_probe", {"/"});
  EXPECT_EQ(probe.nextText(), "held");
  EXPECT_EQ(service.next(), kTookDelay);
  EXPECT_EQ(service.next(), kTookHold);
  probe.signal(SIGKILL);
  const std::set<std::string> released = {service.next(), service.next()};
  EXPECT_EQ(released, (std::set<std::string>{"released sleep:shutdown", "released idle"}));
}

TEST(SystemBusOfTests, address_isNotTheMachines) {
  const char* const address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
  ASSERT_NE(address, nullptr) << "a test would reach the machine's own bus";
  EXPECT_EQ(std::string(address).find("/run/dbus"), std::string::npos) << address;
  sd_bus* bus = nullptr;
  EXPECT_LT(sd_bus_open_system(&bus), 0);
  sd_bus_close_unref(bus);
}

}  // namespace
}  // namespace cirrovane::test
