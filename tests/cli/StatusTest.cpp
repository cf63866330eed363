#include "tests/cli/HealthyMac.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class Status : public testing::Test {
 protected:
  json sample() const {
    const ChildResult result = mac_.run({"status", "--json"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.err, IsEmpty());
    return parsed(result.out);
  }

  const HealthyMac mac_;
};

TEST_F(Status, healthyMac_isToldAsAlignedText) {
  const ChildResult result = mac_.run({"status"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  const std::size_t firstLine = result.out.find('\n') + 1;
  EXPECT_THAT(result.out.substr(0, firstLine),
              MatchesRegex("  Captured              [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}\n"));
  EXPECT_EQ(result.out.substr(firstLine),
            "CPU\n"
            "  Usage                 17.8%\n"
            "  Load                  1.52 / 1.31 / 1.20\n"
            "  Thermal State         Nominal\n"
            "  Temperature           61.8 C\n"
            "Memory\n"
            "  Used                  7.37 GB (43%)\n"
            "  Total                 17.18 GB\n"
            "Storage\n"
            "  Free                  212.5 GB\n"
            "  Total                 494.38 GB\n"
            "Power\n"
            "  Battery               87%\n"
            "  Charging              Yes\n"
            "  Low Power Mode        Off\n"
            "  Uptime                3d 4h\n"
            "Network\n"
            "  iCloud Reachability   Reachable\n");
}

TEST_F(Status, healthyMac_isToldAsOneJSONObject) {
  json status = sample();
  EXPECT_NEAR(status["cpuUsagePercent"], 17.83, 1e-9);
  EXPECT_THAT(status["capturedAt"].get<std::string>(),
              MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z"));
  status.erase("cpuUsagePercent");
  status.erase("capturedAt");
  EXPECT_EQ(status, (json{{"load1m", 1.52},
                          {"load5m", 1.31},
                          {"load15m", 1.2},
                          {"cpuTemperatureC", 61.8},
                          {"thermalState", "Nominal"},
                          {"memoryUsedBytes", 7'372'800'000},
                          {"memoryTotalBytes", 17'179'869'184},
                          {"diskFreeBytes", 212'500'000'000},
                          {"diskTotalBytes", 494'384'795'648},
                          {"batteryPercent", 87},
                          {"batteryCharging", true},
                          {"lowPowerMode", false},
                          {"networkReachable", true},
                          {"uptimeSeconds", 273'600}}));
}

TEST_F(Status, macThatTellsNothing_hasOnlyWhatAlwaysIs) {
  mac_.describe(json::object());
  for (const auto& [command, answer] : kAnswers) {
    mac_.removeCommand(command);
  }
  json status = sample();
  status.erase("capturedAt");
  EXPECT_EQ(
      status,
      (json{{"lowPowerMode", false}, {"memoryTotalBytes", 0}, {"thermalState", "Unknown"}, {"uptimeSeconds", 0}}));
  const std::string text = mac_.run({"status"}).out;
  EXPECT_EQ(text.substr(text.find('\n') + 1),
            "CPU\n"
            "  Usage                 Unknown\n"
            "  Load                  - / - / -\n"
            "  Thermal State         Unknown\n"
            "  Temperature           Unknown (optional sensor required)\n"
            "Memory\n"
            "  Used                  Unknown\n"
            "  Total                 Zero KB\n"
            "Storage\n"
            "  Free                  Unknown\n"
            "  Total                 Unknown\n"
            "Power\n"
            "  Battery               Unknown\n"
            "  Charging              Unknown\n"
            "  Low Power Mode        Off\n"
            "  Uptime                0m\n"
            "Network\n"
            "  iCloud Reachability   Unknown\n");
}

TEST_F(Status, commands_getTheirExactArguments) {
  for (const char* command : {kTop, kScutil, kVMStat, kTemperatureTool}) {
    mac_.setCommand(command,
                    "for argument; do printf '[%s]' \"$argument\"; done >>\"$0.arguments\"\n"
                    "echo >>\"$0.arguments\"");
  }
  sample();
  const auto argumentsOf = [&](const char* command) {
    return readFile(mac_.pathOf(std::string(command) + ".arguments"));
  };
  EXPECT_EQ(argumentsOf(kTop), "[-l][1][-n][0]\n");
  EXPECT_EQ(argumentsOf(kScutil), "[-r][www.icloud.com]\n");
  EXPECT_EQ(argumentsOf(kVMStat), "\n");
  EXPECT_EQ(argumentsOf(kTemperatureTool), "\n");
}

TEST_F(Status, temperatureTool_ofIntel_isTakenOnlyWithoutTheOther) {
  mac_.setCommand("/usr/local/bin/osx-cpu-temp", HealthyMac::printing("40.5 C\n"));
  EXPECT_EQ(sample()["cpuTemperatureC"], 61.8);
  mac_.removeCommand(kTemperatureTool);
  EXPECT_EQ(sample()["cpuTemperatureC"], 40.5);
}

TEST_F(Status, describedEnvironment_isAllThatCommandsSee) {
  mac_.setCommand(kTemperatureTool, "echo \"${CIRROVANE_ONE:-0}.${CIRROVANE_TWO:-0} C\"");
  const ChildOptions options = {.workingDirectory = "",
                                .environment = {{"CIRROVANE_ONE", "31"}, {"CIRROVANE_TWO", "5"}}};
  EXPECT_THAT(mac_.run({"status"}, options).out, HasSubstr("  Temperature           31.5 C\n"));
  json facts = HealthyMac::facts();
  facts["environment"] = {{"CIRROVANE_ONE", "77"}};
  mac_.describe(facts);
  EXPECT_THAT(mac_.run({"status"}, options).out, HasSubstr("  Temperature           77.0 C\n"));
}

TEST_F(Status, nothing_isRecorded) {
  sample();
  EXPECT_EQ(mac_.run({"status"}).exitStatus, 0);
  EXPECT_THAT(namesIn(mac_.storeFolder()), IsEmpty());
  EXPECT_THAT(namesIn(mac_ / "Users/demo/Library"), ElementsAre("Mobile Documents"));
}

TEST_F(Status, anArgument_givesStatus2) {
  const ChildResult result = mac_.run({"status", "network"});
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_THAT(result.out, IsEmpty());
}

class StatusWithoutOutput : public Status, public testing::WithParamInterface<CommandBehaviour> {};

INSTANTIATE_TEST_SUITE_P(All, StatusWithoutOutput, testing::ValuesIn(waysWithoutOutput()),
                         [](const auto& tested) { return std::string(tested.param.title); });

TEST_P(StatusWithoutOutput, everyCommand_leavesItsOwnValueAbsent) {
  for (const auto& [command, answer] : kAnswers) {
    GetParam().apply(mac_, command, answer);
  }
  EXPECT_THAT(keysOf(sample()), ElementsAre("batteryCharging", "batteryPercent", "capturedAt", "diskFreeBytes",
                                            "diskTotalBytes", "load15m", "load1m", "load5m", "lowPowerMode",
                                            "memoryTotalBytes", "thermalState", "uptimeSeconds"));
}

class StatusWithOutput : public Status, public testing::WithParamInterface<CommandBehaviour> {};

INSTANTIATE_TEST_SUITE_P(All, StatusWithOutput, testing::ValuesIn(waysWithOutput()),
                         [](const auto& tested) { return std::string(tested.param.title); });

TEST_P(StatusWithOutput, everyCommand_countsAsAnswered) {
  for (const auto& [command, answer] : kAnswers) {
    GetParam().apply(mac_, command, answer);
  }
  const json status = sample();
  EXPECT_NEAR(status["cpuUsagePercent"], 17.83, 1e-9);
  EXPECT_EQ(status["cpuTemperatureC"], 61.8);
  EXPECT_EQ(status["memoryUsedBytes"], 7'372'800'000);
  EXPECT_EQ(status["networkReachable"], true);
}

/// The one-, five- and fifteen-minute averages of this machine.
std::array<double, 3> hostLoad() {
  std::array<double, 3> samples{};
  EXPECT_EQ(getloadavg(samples.data(), 3), 3);
  return samples;
}

double hostUptime() {
  double seconds = 0;
  std::ifstream("/proc/uptime") >> seconds;
  return seconds;
}

TEST(StatusOfTheHost, values_areThoseOfThisMachine) {
  const TemporaryFolder home(CIRROVANE_TEST_DIR);
  const double uptimeBefore = hostUptime();
  const std::array<double, 3> loadBefore = hostLoad();
  const ChildResult result =
      ctl({"--mac-root", "/", "status", "--json"}, {.workingDirectory = "", .environment = {{"HOME", home.path()}}});
  const std::array<double, 3> loadAfter = hostLoad();
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  const json status = parsed(result.out);

  const std::array<const char*, 3> loads = {"load1m", "load5m", "load15m"};
  for (std::size_t index = 0; index < loads.size(); ++index) {
    EXPECT_GE(status[loads[index]], std::min(loadBefore[index], loadAfter[index]) - 0.5);
    EXPECT_LE(status[loads[index]], std::max(loadBefore[index], loadAfter[index]) + 0.5);
  }
  EXPECT_GE(status["uptimeSeconds"], uptimeBefore - 1);
  EXPECT_LE(status["uptimeSeconds"], hostUptime() + 1);
  EXPECT_EQ(status["memoryTotalBytes"], sysconf(_SC_PHYS_PAGES) * sysconf(_SC_PAGESIZE));
  struct statvfs volume {};
  ASSERT_EQ(statvfs(home.path().c_str(), &volume), 0);
  const auto total = static_cast<double>(volume.f_blocks) * static_cast<double>(volume.f_frsize);
  const auto free = static_cast<double>(volume.f_bavail) * static_cast<double>(volume.f_frsize);
  EXPECT_EQ(status["diskTotalBytes"], total);
  EXPECT_NEAR(status["diskFreeBytes"], free, total / 20);
  EXPECT_EQ(status["thermalState"], "Unknown");
  EXPECT_EQ(status["lowPowerMode"], false);
}

}  // namespace
}  // namespace cirrovane::test
