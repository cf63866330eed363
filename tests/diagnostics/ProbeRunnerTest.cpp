#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemStatusService.h"
#include "tests/diagnostics/MachineFixture.h"

#include <chrono>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {

void PrintTo(const FindingKey& key, std::ostream* out) {
  *out << rawValue(key.domain) << " " << key.title;
}

}  // namespace cirrovane

namespace cirrovane::test {
namespace {

using enum DiagnosticDomain;
using enum DiagnosticSeverity;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// Commands that answer like another runner's, in as much time as each is given here, and at most in their limit.
class TimedCommandRunner final : public CommandRunner {
 public:
  TimedCommandRunner(const FakeCommandRunner& runner, ManualMonotonicClock& clock) : runner_(runner), clock_(clock) {}

  /// Lets an executable take so long.
  void slow(const std::string& executable, milliseconds time) { times_[executable] = time; }

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override {
    std::optional<CommandResult> result = runner_.run(executable, arguments, output, limit);
    const auto found = times_.find(executable);
    const milliseconds time = found != times_.end() ? found->second : milliseconds::zero();
    if (limit && time >= *limit) {
      clock_.advance(*limit);
      return CommandResult{std::nullopt, "", true};
    }
    clock_.advance(time);
    return result;
  }
  bool isExecutable(const std::string& path) const override { return runner_.isExecutable(path); }

 private:
  const FakeCommandRunner& runner_;
  ManualMonotonicClock& clock_;
  std::map<std::string, milliseconds> times_;
};

class Probes : public MachineTest {
 protected:
  CollectedFindings collected() { return service().collect(probes_, report_, {existingFolder()}); }
  SystemStatusSnapshot sample() { return SystemStatusService(system_, files_, clock_).capture(probes_); }
  void hang(const std::string& executable) { timed_.slow(executable, std::chrono::hours(1)); }
  ProbeResult run(const std::string& executable) { return probes_.run(executable, {}, CommandOutput::collected); }
  /// How often an executable was started.
  std::ptrdiff_t starts(const std::string& executable) const {
    return std::ranges::count(commands_.ran(), executable, [](const CommandLine& line) { return line.front(); });
  }

  TimedCommandRunner timed_{commands_, monotonicClock_};
  ProbeRunner probes_{timed_, monotonicClock_};
};

TEST_F(Probes, eachProbe_hasTenSeconds) {
  collected();
  sample();
  EXPECT_THAT(commands_.limits(), SizeIs(15));
  EXPECT_THAT(commands_.limits(), testing::Each(TimeLimit(seconds(10))));
}

TEST_F(Probes, limits_canBeOthers) {
  ProbeRunner probes(timed_, monotonicClock_, {.probe = milliseconds(7), .cycle = milliseconds(9)});
  timed_.slow("/bin/tool", milliseconds(4));
  for (int round = 0; round < 3; ++round) {
    probes.run("/bin/tool", {}, CommandOutput::collected);
  }
  EXPECT_THAT(commands_.limits(), ElementsAre(milliseconds(7), milliseconds(5), milliseconds(1)));
}

TEST_F(Probes, outOfTime_isAsIfItHadNotBeenStarted) {
  commands_.answer({"/bin/tool"}, "text");
  EXPECT_EQ(run("/bin/tool").command->output, "text");
  hang("/bin/tool");
  const ProbeResult result = run("/bin/tool");
  EXPECT_TRUE(result.isReached);
  EXPECT_FALSE(result.command);
}

TEST_F(Probes, executableThatHung_isNotStartedAgain) {
  commands_.answer({"/bin/other"}, "text");
  hang("/bin/tool");
  EXPECT_TRUE(run("/bin/tool").isReached);
  EXPECT_FALSE(run("/bin/tool").isReached);
  EXPECT_FALSE(probes_.run("/bin/tool", {"argument"}, CommandOutput::discarded).isReached);
  EXPECT_TRUE(run("/bin/other").command);
  EXPECT_EQ(starts("/bin/tool"), 1);
}

TEST_F(Probes, executableThatFailed_isStartedAgain) {
  EXPECT_TRUE(run("/bin/missing").isReached);
  EXPECT_TRUE(run("/bin/missing").isReached);
  EXPECT_EQ(starts("/bin/missing"), 2);
}

TEST_F(Probes, failures_areCountedByWhatBecameOfThem) {
  EXPECT_EQ(probes_.failures(), ProbeFailures());
  commands_.answer({"/bin/other"}, "text");
  hang("/bin/tool");
  for (const char* executable : {"/bin/tool", "/bin/tool", "/bin/missing", "/bin/missing", "/bin/other"}) {
    run(executable);
  }
  EXPECT_EQ(probes_.failures(), (ProbeFailures{.notStarted = 2, .outOfTime = 1, .notReached = 1}));
}

TEST_F(Probes, cycle_hasThirtySecondsFromItsFirstProbe) {
  monotonicClock_.advance(std::chrono::hours(1));
  timed_.slow("/bin/tool", milliseconds(9'500));
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(run("/bin/tool").isReached);
  }
  EXPECT_TRUE(run("/bin/quick").isReached);
  EXPECT_EQ(commands_.limits().back(), TimeLimit(milliseconds(1'500)));
  monotonicClock_.advance(milliseconds(1'500));
  EXPECT_FALSE(run("/bin/quick").isReached);
  EXPECT_EQ(starts("/bin/quick"), 1);
}

TEST_F(Probes, cycleOverASleepOfTheMachine_reachesNothingMore) {
  EXPECT_TRUE(run("/bin/tool").isReached);
  monotonicClock_.sleep(std::chrono::hours(8));
  EXPECT_FALSE(run("/bin/tool").isReached);
}

TEST_F(Probes, healthyMac_reachesEverything) {
  EXPECT_THAT(collected().notReached, IsEmpty());
}

TEST_F(Probes, pgrepThatHangs_costsTheOtherProcessesTheirFindings) {
  hang("/usr/bin/pgrep");
  const CollectedFindings result = collected();
  EXPECT_THAT(result.notReached, ElementsAre(FindingKey{iCloud, "cloudd daemon"}, FindingKey{iCloud, "fileproviderd"}));
  EXPECT_EQ(rowTitled("bird daemon", result.findings),
            (Row{warning, "bird daemon", "Not observed. iCloud upload activity may stall."}));
  EXPECT_EQ(rowTitled("cloudd daemon", result.findings), std::nullopt);
  EXPECT_EQ(rowTitled("SMART tooling", result.findings)->severity, info) << "the lookup finds it all the same";
  EXPECT_EQ(starts("/usr/bin/pgrep"), 1);
}

TEST_F(Probes, pgrepThatHangsAndALookupThatFails_saysNothingOfSmartctl) {
  hang("/usr/bin/pgrep");
  commands_.forget(kSMARTLookup);
  const CollectedFindings result = collected();
  EXPECT_THAT(result.notReached, Contains(FindingKey{storage, "SMART tooling"}));
  EXPECT_EQ(rowTitled("SMART tooling", result.findings), std::nullopt);
}

TEST_F(Probes, routeThatHangs_couldNotBeQueried) {
  hang(kRoute.front());
  const CollectedFindings result = collected();
  EXPECT_EQ(rowTitled("Default route", result.findings),
            (Row{warning, "Default route", "Could not query default route."}));
  EXPECT_THAT(result.notReached, IsEmpty());
}

TEST_F(Probes, lookupThatHangs_isNotAskedForTheTemperatureTool) {
  hang("/usr/bin/which");
  const CollectedFindings result = collected();
  EXPECT_EQ(rowTitled("SMART tooling", result.findings)->severity, warning);
  EXPECT_THAT(result.notReached, ElementsAre(FindingKey{performance, "Temperature probe"}));
}

TEST_F(Probes, everythingHangs_leavesWhatNeedsNoProbeAndTakesThirtySeconds) {
  for (const CommandLine& line : {pgrep(""), kRoute, kReachability, kResolution, kSwap, kSMARTLookup, kTop}) {
    hang(line.front());
  }
  const std::chrono::nanoseconds start = monotonicClock_.sinceBoot();
  const CollectedFindings result = collected();
  EXPECT_EQ(monotonicClock_.sinceBoot() - start, seconds(30));
  EXPECT_THAT(result.notReached,
              ElementsAre(FindingKey{iCloud, "cloudd daemon"}, FindingKey{iCloud, "fileproviderd"},
                          FindingKey{network, "DNS resolution"}, FindingKey{storage, "Swap usage"},
                          FindingKey{storage, "SMART tooling"}, FindingKey{performance, "CPU usage sample"},
                          FindingKey{performance, "Temperature probe"}));
  EXPECT_EQ(rowTitled("iCloud host reachability", result.findings), std::nullopt);
  EXPECT_TRUE(rowTitled("Disk capacity", result.findings));
  EXPECT_THAT(commands_.ran(), SizeIs(3));
}

TEST_F(Probes, timeThatDiagnosticsUsedUp_isMissingForTheStatus) {
  for (const CommandLine& line : {pgrep(""), kRoute, kReachability}) {
    hang(line.front());
  }
  collected();
  const SystemStatusSnapshot snapshot = sample();
  EXPECT_EQ(snapshot.cpuUsagePercent, std::nullopt);
  EXPECT_EQ(snapshot.cpuTemperatureC, std::nullopt);
  EXPECT_EQ(snapshot.memoryUsedBytes, std::nullopt);
  EXPECT_EQ(snapshot.networkReachable, std::nullopt);
  EXPECT_EQ(snapshot.memoryTotalBytes, 17'179'869'184U);
  EXPECT_THAT(commands_.ran(), SizeIs(3));
}

TEST_F(Probes, executableThatHungInDiagnostics_isNotStartedForTheStatus) {
  hang(kTop.front());
  collected();
  const SystemStatusSnapshot snapshot = sample();
  EXPECT_EQ(starts(kTop.front()), 1);
  EXPECT_EQ(snapshot.cpuUsagePercent, std::nullopt);
  EXPECT_TRUE(snapshot.memoryUsedBytes);
}

TEST_F(Probes, nextCycle_beginsAnew) {
  hang("/usr/bin/pgrep");
  collected();
  timed_.slow("/usr/bin/pgrep", milliseconds::zero());
  ProbeRunner next(timed_, monotonicClock_);
  const CollectedFindings result = service().collect(next, report_, {});
  EXPECT_THAT(result.notReached, IsEmpty());
  EXPECT_EQ(rowTitled("bird daemon", result.findings)->severity, ok);
}

TEST_F(Probes, executables_areLookedForWithoutALimit) {
  EXPECT_TRUE(probes_.isExecutable(kTemperature.front()));
  EXPECT_FALSE(probes_.isExecutable("/bin/missing"));
  EXPECT_THAT(commands_.ran(), IsEmpty());
}

}  // namespace
}  // namespace cirrovane::test
