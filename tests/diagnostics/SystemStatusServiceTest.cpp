#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "diagnostics/SystemStatusService.h"
#include "tests/diagnostics/MachineFixture.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class SystemStatus : public MachineTest {
 protected:
  SystemStatusService statusService() const { return {system_, files_, clock_}; }
  SystemStatusSnapshot sample() const { return statusService().capture(newProbes()); }
};

/// No two fields of it hold the same value.
SystemStatusSnapshot wholeSnapshot() {
  SystemStatusSnapshot snapshot;
  snapshot.capturedAt = Time(std::chrono::seconds(1'794'766'870));
  snapshot.cpuUsagePercent = 17.5;
  snapshot.load1m = 1.25;
  snapshot.load5m = 2.5;
  snapshot.load15m = 3.75;
  snapshot.cpuTemperatureC = 61.5;
  snapshot.thermalState = "Fair";
  snapshot.memoryUsedBytes = 18'446'744'073'709'551'615U;
  snapshot.memoryTotalBytes = 17'179'869'184;
  snapshot.diskFreeBytes = -1;
  snapshot.diskTotalBytes = 494'384'795'648;
  snapshot.batteryPercent = 87;
  snapshot.batteryCharging = false;
  snapshot.lowPowerMode = true;
  snapshot.networkReachable = true;
  snapshot.uptimeSeconds = 273'600.5;
  return snapshot;
}

TEST_F(SystemStatus, healthyMac_isMeasuredInEveryField) {
  const SystemStatusSnapshot snapshot = sample();
  EXPECT_EQ(snapshot.capturedAt, clock_.now());
  EXPECT_NEAR(snapshot.cpuUsagePercent.value_or(0), 17.83, 1e-9);
  EXPECT_EQ(snapshot.load1m, 1.52);
  EXPECT_EQ(snapshot.load5m, 1.31);
  EXPECT_EQ(snapshot.load15m, 1.20);
  EXPECT_EQ(snapshot.cpuTemperatureC, 61.8);
  EXPECT_EQ(snapshot.thermalState, "Nominal");
  EXPECT_EQ(snapshot.memoryUsedBytes, std::uint64_t{300'000 + 100'000 + 50'000} * 16'384);
  EXPECT_EQ(snapshot.memoryTotalBytes, 17'179'869'184U);
  EXPECT_EQ(snapshot.diskFreeBytes, 212'500'000'000);
  EXPECT_EQ(snapshot.diskTotalBytes, 494'384'795'648);
  EXPECT_EQ(snapshot.batteryPercent, 87);
  EXPECT_EQ(snapshot.batteryCharging, true);
  EXPECT_FALSE(snapshot.lowPowerMode);
  EXPECT_EQ(snapshot.networkReachable, true);
  EXPECT_EQ(snapshot.uptimeSeconds, 273'600);
}

TEST_F(SystemStatus, commands_runInOrderWithTheirExactArguments) {
  sample();
  EXPECT_THAT(
      commands_.ran(),
      ElementsAre(CommandLine{"/usr/bin/top", "-l", "1", "-n", "0"}, CommandLine{"/opt/homebrew/bin/osx-cpu-temp"},
                  CommandLine{"/usr/bin/vm_stat"}, CommandLine{"/usr/sbin/scutil", "-r", "www.icloud.com"}));
}

TEST_F(SystemStatus, nothingToMeasureWith_leavesTheFourValuesThatAlwaysAre) {
  commands_ = FakeCommandRunner();
  files_.setVolumeCapacities("/Users/test", {});
  system_.facts.loadAverages.reset();
  system_.facts.powerSources.clear();
  system_.facts.thermalState.reset();
  SystemStatusSnapshot expected;
  expected.capturedAt = clock_.now();
  expected.memoryTotalBytes = 17'179'869'184;
  expected.uptimeSeconds = 273'600;
  EXPECT_EQ(sample(), expected);
}

/// Commands that take a minute each.
class SlowCommandRunner final : public CommandRunner {
 public:
  SlowCommandRunner(const CommandRunner& runner, ManualClock& clock) : runner_(runner), clock_(clock) {}

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override {
    clock_.advance(std::chrono::minutes(1));
    return runner_.run(executable, arguments, output, limit);
  }
  bool isExecutable(const std::string& path) const override { return runner_.isExecutable(path); }

 private:
  const CommandRunner& runner_;
  ManualClock& clock_;
};

TEST_F(SystemStatus, slowCommands_leaveTheSampleDatedAtItsStart) {
  const Time start = clock_.now();
  const SlowCommandRunner slow(commands_, clock_);
  ProbeRunner probes(slow, monotonicClock_);
  EXPECT_EQ(statusService().capture(probes).capturedAt, start);
  EXPECT_EQ(clock_.now() - start, std::chrono::minutes(4));
}

TEST_F(SystemStatus, cpuUsage_ofIntegerPercentages_isTheirSum) {
  commands_.answer(kTop, "CPU usage: 5% user, 3% sys, 92% idle\n");
  EXPECT_EQ(sample().cpuUsagePercent, 8);
}

TEST_F(SystemStatus, cpuUsage_aboveAll_isNotCutOff) {
  commands_.answer(kTop, "CPU usage: 99.5% user, 80% sys, 0% idle\n");
  EXPECT_EQ(sample().cpuUsagePercent, 179.5);
}

TEST_F(SystemStatus, cpuUsage_withoutOutput_isAbsent) {
  inEveryWayWithoutOutput(kTop, [&] { EXPECT_EQ(sample().cpuUsagePercent, std::nullopt); });
}

TEST_F(SystemStatus, cpuUsage_outsideTheFirstSuchLine_isAbsent) {
  commands_.answer(kTop, "CPU usage unknown\nCPU usage: 5% user, 3% sys, 92% idle\n");
  EXPECT_EQ(sample().cpuUsagePercent, std::nullopt);
}

TEST_F(SystemStatus, loadAverages_areAllThereOrNone) {
  system_.facts.loadAverages.reset();
  const SystemStatusSnapshot snapshot = sample();
  EXPECT_EQ(snapshot.load1m, std::nullopt);
  EXPECT_EQ(snapshot.load5m, std::nullopt);
  EXPECT_EQ(snapshot.load15m, std::nullopt);
}

TEST_F(SystemStatus, temperatureTool_ofAppleSilicon_isTakenBeforeTheOther) {
  commands_.makeExecutable(kIntelTemperature.front());
  commands_.answer(kIntelTemperature, "40.0°C\n");
  EXPECT_EQ(sample().cpuTemperatureC, 61.8);
  EXPECT_THAT(commands_.ran(), Not(Contains(kIntelTemperature)));
}

TEST_F(SystemStatus, temperatureTool_thatFails_isNotReplacedByTheOther) {
  commands_.makeExecutable(kIntelTemperature.front());
  commands_.answer(kIntelTemperature, "40.0°C\n");
  inEveryWayWithoutOutput(kTemperature, [&] { EXPECT_EQ(sample().cpuTemperatureC, std::nullopt); });
  EXPECT_THAT(commands_.ran(), Not(Contains(kIntelTemperature)));
}

TEST_F(SystemStatus, temperatureTool_onlyOfIntel_isTaken) {
  FakeCommandRunner commands;
  commands.makeExecutable(kIntelTemperature.front());
  commands.answer(kIntelTemperature, "40.0°C\n");
  ProbeRunner probes(commands, monotonicClock_);
  EXPECT_EQ(statusService().capture(probes).cpuTemperatureC, 40.0);
  EXPECT_THAT(commands.ran(), Contains(CommandLine{"/usr/local/bin/osx-cpu-temp"}));
}

TEST_F(SystemStatus, temperatureTool_inNeitherPlace_runsNoCommand) {
  FakeCommandRunner commands;
  commands.answer(kTemperature, "61.8°C\n");
  commands.answer(kIntelTemperature, "61.8°C\n");
  ProbeRunner probes(commands, monotonicClock_);
  EXPECT_EQ(statusService().capture(probes).cpuTemperatureC, std::nullopt);
  EXPECT_THAT(commands.ran(), ElementsAre(kTop, kMemory, kReachability));
}

TEST_F(SystemStatus, temperatureTool_thatPrintsNoNumber_givesNone) {
  commands_.answer(kTemperature, "no sensor\n");
  EXPECT_EQ(sample().cpuTemperatureC, std::nullopt);
}

TEST_F(SystemStatus, thermalState_isNamed) {
  const auto stateOf = [&](std::optional<ThermalState> state) {
    system_.facts.thermalState = state;
    return sample().thermalState;
  };
  EXPECT_EQ(stateOf(ThermalState::nominal), "Nominal");
  EXPECT_EQ(stateOf(ThermalState::fair), "Fair");
  EXPECT_EQ(stateOf(ThermalState::serious), "Serious");
  EXPECT_EQ(stateOf(ThermalState::critical), "Critical");
  EXPECT_EQ(stateOf(std::nullopt), "Unknown");
}

TEST_F(SystemStatus, memoryInUse_withoutVMStat_isAbsentButTheTotalStays) {
  inEveryWayWithoutOutput(kMemory, [&] {
    EXPECT_EQ(sample().memoryUsedBytes, std::nullopt);
    EXPECT_EQ(sample().memoryTotalBytes, 17'179'869'184U);
  });
}

TEST_F(SystemStatus, memoryInUse_withoutAPageSize_isAbsent) {
  for (const char* output : {"", "\n\n", "Statistics:\nPages active: 1.\n"}) {
    commands_.answer(kMemory, output);
    EXPECT_EQ(sample().memoryUsedBytes, std::nullopt) << output;
  }
}

TEST_F(SystemStatus, memoryInUse_missingAndUnreadableCounts_areZero) {
  commands_.answer(kMemory, "(page size of 4096 bytes)\nPages active: many.\nPages wired down: 1.234.\n");
  EXPECT_EQ(sample().memoryUsedBytes, 1234U * 4096U);
}

TEST_F(SystemStatus, disk_isThatOfTheHomeFolderWithEachValueAsItIs) {
  files_.setHomeDirectory("/Volumes/Big/me");
  files_.setVolumeCapacities("/Volumes/Big/me", {std::nullopt, 5});
  EXPECT_EQ(sample().diskFreeBytes, std::nullopt);
  EXPECT_EQ(sample().diskTotalBytes, 5);
  files_.setVolumeCapacities("/Volumes/Big/me", {7, std::nullopt});
  EXPECT_EQ(sample().diskFreeBytes, 7);
  EXPECT_EQ(sample().diskTotalBytes, std::nullopt);
}

TEST_F(SystemStatus, battery_isTheFirstSourceWithACapacity) {
  system_.facts.powerSources = {{1, 0, true}, {2, 3, false}};
  EXPECT_EQ(sample().batteryPercent, 67);
  EXPECT_EQ(sample().batteryCharging, false);
  system_.facts.powerSources = {{1, std::nullopt, true}};
  EXPECT_EQ(sample().batteryPercent, std::nullopt);
  EXPECT_EQ(sample().batteryCharging, std::nullopt);
}

TEST_F(SystemStatus, lowPowerModeUptimeAndMemory_areThoseOfTheSystem) {
  system_.facts.isLowPowerModeEnabled = true;
  system_.facts.systemUptime = 12.25;
  system_.facts.physicalMemory = 8;
  EXPECT_TRUE(sample().lowPowerMode);
  EXPECT_EQ(sample().uptimeSeconds, 12.25);
  EXPECT_EQ(sample().memoryTotalBytes, 8U);
}

TEST_F(SystemStatus, reachability_isTrueOrUnknown) {
  const auto reachableFor = [&](const std::string& output) {
    commands_.answer(kReachability, output);
    return sample().networkReachable;
  };
  EXPECT_EQ(reachableFor("Reachable\n"), true);
  EXPECT_EQ(reachableFor("reachable\n"), std::nullopt);
  EXPECT_EQ(reachableFor(""), std::nullopt);
}

TEST_F(SystemStatus, reachability_reportOfNotReachable_isTrueToo) {
  commands_.answer(kReachability, "Not Reachable\n");
  EXPECT_EQ(sample().networkReachable, true);
}

TEST_F(SystemStatus, reachability_withoutOutput_isUnknown) {
  inEveryWayWithoutOutput(kReachability, [&] { EXPECT_EQ(sample().networkReachable, std::nullopt); });
}

TEST_F(SystemStatus, runCommand_givesTheTextOfACommandThatSucceeds) {
  commands_.answer({"/bin/tool", "a"}, "text\n");
  EXPECT_EQ(statusService().runCommand(newProbes(), "/bin/tool", {"a"}).text, "text\n");
  inEveryWayWithoutOutput({"/bin/tool", "a"}, [&] {
    EXPECT_EQ(statusService().runCommand(newProbes(), "/bin/tool", {"a"}).text, std::nullopt);
  });
}

TEST(SystemStatusSnapshot, empty_holdsNothing) {
  const SystemStatusSnapshot empty = SystemStatusSnapshot::empty();
  EXPECT_EQ(empty.cpuUsagePercent, std::nullopt);
  EXPECT_EQ(empty.load1m, std::nullopt);
  EXPECT_EQ(empty.load5m, std::nullopt);
  EXPECT_EQ(empty.load15m, std::nullopt);
  EXPECT_EQ(empty.cpuTemperatureC, std::nullopt);
  EXPECT_EQ(empty.thermalState, "Unknown");
  EXPECT_EQ(empty.memoryUsedBytes, std::nullopt);
  EXPECT_EQ(empty.memoryTotalBytes, 0U);
  EXPECT_EQ(empty.diskFreeBytes, std::nullopt);
  EXPECT_EQ(empty.diskTotalBytes, std::nullopt);
  EXPECT_EQ(empty.batteryPercent, std::nullopt);
  EXPECT_EQ(empty.batteryCharging, std::nullopt);
  EXPECT_FALSE(empty.lowPowerMode);
  EXPECT_EQ(empty.networkReachable, std::nullopt);
  EXPECT_EQ(empty.uptimeSeconds, 0);
}

TEST(SystemStatusSnapshot, fields_areListedInDeclarationOrder) {
  std::vector<std::string> keys;
  forEachField<SystemStatusSnapshot>([&](const auto& field) { keys.emplace_back(field.key); });
  EXPECT_THAT(keys,
              ElementsAre("capturedAt", "cpuUsagePercent", "load1m", "load5m", "load15m", "cpuTemperatureC",
                          "thermalState", "memoryUsedBytes", "memoryTotalBytes", "diskFreeBytes", "diskTotalBytes",
                          "batteryPercent", "batteryCharging", "lowPowerMode", "networkReachable", "uptimeSeconds"));
}

TEST(SystemStatusSnapshot, writtenForm_hasOneKeyAField) {
  EXPECT_EQ(encodeJSON(wholeSnapshot()),
            "{\n"
            "  \"batteryCharging\": false,\n"
            "  \"batteryPercent\": 87,\n"
            "  \"capturedAt\": \"2026-11-15T18:21:10Z\",\n"
            "  \"cpuTemperatureC\": 61.5,\n"
            "  \"cpuUsagePercent\": 17.5,\n"
            "  \"diskFreeBytes\": -1,\n"
            "  \"diskTotalBytes\": 494384795648,\n"
            "  \"load15m\": 3.75,\n"
            "  \"load1m\": 1.25,\n"
            "  \"load5m\": 2.5,\n"
            "  \"lowPowerMode\": true,\n"
            "  \"memoryTotalBytes\": 17179869184,\n"
            "  \"memoryUsedBytes\": 18446744073709551615,\n"
            "  \"networkReachable\": true,\n"
            "  \"thermalState\": \"Fair\",\n"
            "  \"uptimeSeconds\": 273600.5\n"
            "}");
}

TEST(SystemStatusSnapshot, writtenFormOfEmpty_hasOnlyWhatAlwaysIs) {
  const auto json = nlohmann::json::parse(encodeJSON(SystemStatusSnapshot::empty()));
  std::vector<std::string> keys;
  for (const auto& entry : json.items()) {
    keys.push_back(entry.key());
  }
  EXPECT_THAT(keys, ElementsAre("capturedAt", "lowPowerMode", "memoryTotalBytes", "thermalState", "uptimeSeconds"));
}

TEST(SystemStatusSnapshot, encodedAndDecoded_isEqual) {
  for (const SystemStatusSnapshot& snapshot : {wholeSnapshot(), SystemStatusSnapshot::empty()}) {
    EXPECT_EQ(decodeJSON<SystemStatusSnapshot>(encodeJSON(snapshot)), snapshot);
  }
}

TEST(SystemStatusSnapshot, withoutAKeyThatAlwaysIs_failsToDecode) {
  for (const char* key : {"capturedAt", "lowPowerMode", "memoryTotalBytes", "thermalState", "uptimeSeconds"}) {
    auto json = nlohmann::json::parse(encodeJSON(wholeSnapshot()));
    json.erase(key);
    EXPECT_EQ(decodeJSON<SystemStatusSnapshot>(json.dump()), std::nullopt) << key;
  }
}

TEST(SystemStatusSnapshot, everyField_countsForEqualityAndHash) {
  const SystemStatusSnapshot whole = wholeSnapshot();
  std::unordered_set<SystemStatusSnapshot> different = {whole};
  const auto expectNew = [&](auto change) {
    SystemStatusSnapshot other = whole;
    change(other);
    EXPECT_NE(other, whole);
    EXPECT_TRUE(different.insert(other).second);
    EXPECT_NE(std::hash<SystemStatusSnapshot>()(other), std::hash<SystemStatusSnapshot>()(whole));
  };
  expectNew([](auto& other) { other.capturedAt += std::chrono::seconds(1); });
  expectNew([](auto& other) { other.cpuUsagePercent.reset(); });
  expectNew([](auto& other) { other.load1m.reset(); });
  expectNew([](auto& other) { other.load5m.reset(); });
  expectNew([](auto& other) { other.load15m.reset(); });
  expectNew([](auto& other) { other.cpuTemperatureC.reset(); });
  expectNew([](auto& other) { other.thermalState = "Serious"; });
  expectNew([](auto& other) { other.memoryUsedBytes.reset(); });
  expectNew([](auto& other) { other.memoryTotalBytes = 0; });
  expectNew([](auto& other) { other.diskFreeBytes.reset(); });
  expectNew([](auto& other) { other.diskTotalBytes.reset(); });
  expectNew([](auto& other) { other.batteryPercent.reset(); });
  expectNew([](auto& other) { other.batteryCharging.reset(); });
  expectNew([](auto& other) { other.lowPowerMode = false; });
  expectNew([](auto& other) { other.networkReachable.reset(); });
  expectNew([](auto& other) { other.uptimeSeconds = 0; });
}

}  // namespace
}  // namespace cirrovane::test
