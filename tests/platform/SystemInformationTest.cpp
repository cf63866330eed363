#include "platform/linux/host/HostDisk.h"
#include "platform/linux/host/HostPower.h"
#include "platform/linux/host/HostSystemInformation.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/linux/macroot/RootSystemInformation.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/statvfs.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// A Mac root with the given facts, and what is to be learnt from it.
class Described {
 public:
  explicit Described(const std::string& facts) { writeFile(folder_ / "machine.json", facts); }

  void change(const std::string& facts) const { writeFile(folder_ / "machine.json", facts); }
  const SystemInformation& information() const { return information_; }
  VolumeCapacities volume() const { return volumeOf(root_); }

 private:
  static MacRoot openRoot(const TemporaryFolder& folder) {
    writeFile(folder / "machine.json", "{}");
    return *MacRoot::open(folder.path());
  }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  MacRoot root_ = openRoot(folder_);
  RootSystemInformation information_{root_};
};

TEST(DescribedMachine, facts_given_areWhatItSays) {
  const Described machine(R"({
    "environment": {"PATH": "/usr/bin", "EMPTY": ""}, "ubiquityIdentityToken": true,
    "runningApplications": ["com.apple.dock", "com.apple.finder"],
    "volume": {"availableForImportantUsage": 212500000000, "total": 494384795648},
    "powerSources": [{"Current Capacity": 87, "Max Capacity": 100, "Is Charging": true}, {}],
    "lowPowerMode": true, "thermalState": "serious", "loadAverages": [1.52, 1.31, 1.2],
    "physicalMemory": 17179869184, "uptimeSeconds": 273600.5})");
  const SystemInformation& information = machine.information();
  EXPECT_TRUE(information.hasUbiquityIdentityToken());
  EXPECT_TRUE(information.isApplicationRunning("com.apple.finder"));
  EXPECT_FALSE(information.isApplicationRunning("com.apple.find"));
  EXPECT_EQ(information.thermalState(), ThermalState::serious);
  EXPECT_TRUE(information.isLowPowerModeEnabled());
  EXPECT_DOUBLE_EQ(information.systemUptime(), 273600.5);
  EXPECT_EQ(information.physicalMemory(), 17179869184U);
  EXPECT_EQ(information.environmentVariable("PATH"), "/usr/bin");
  EXPECT_EQ(information.environmentVariable("EMPTY"), "");
  EXPECT_EQ(information.environmentVariable("HOME"), std::nullopt);
  ASSERT_TRUE(information.loadAverages());
  EXPECT_DOUBLE_EQ(information.loadAverages()->oneMinute, 1.52);
  EXPECT_DOUBLE_EQ(information.loadAverages()->fiveMinutes, 1.31);
  EXPECT_DOUBLE_EQ(information.loadAverages()->fifteenMinutes, 1.2);
  ASSERT_EQ(information.powerSources().size(), 2U);
  const PowerSource battery = information.powerSources().front();
  EXPECT_EQ(battery.currentCapacity, 87);
  EXPECT_EQ(battery.maximumCapacity, 100);
  EXPECT_EQ(battery.isCharging, true);
  EXPECT_EQ(information.powerSources().back().maximumCapacity, std::nullopt);
  EXPECT_EQ(machine.volume().availableForImportantUsage, 212500000000);
  EXPECT_EQ(machine.volume().total, 494384795648);
}

TEST(DescribedMachine, facts_missing_areAbsent) {
  setenv("CIRROVANE_TEST_VARIABLE", "ours", 1);
  const Described machine("{}");
  const SystemInformation& information = machine.information();
  EXPECT_FALSE(information.hasUbiquityIdentityToken());
  EXPECT_FALSE(information.isApplicationRunning("com.apple.finder"));
  EXPECT_EQ(information.thermalState(), std::nullopt);
  EXPECT_FALSE(information.isLowPowerModeEnabled());
  EXPECT_DOUBLE_EQ(information.systemUptime(), 0);
  EXPECT_EQ(information.physicalMemory(), 0U);
  EXPECT_EQ(information.environmentVariable("CIRROVANE_TEST_VARIABLE"), "ours");
  EXPECT_FALSE(information.loadAverages());
  EXPECT_TRUE(information.powerSources().empty());
  EXPECT_EQ(machine.volume().availableForImportantUsage, std::nullopt);
  EXPECT_EQ(machine.volume().total, std::nullopt);
  unsetenv("CIRROVANE_TEST_VARIABLE");
}

TEST(DescribedMachine, facts_ofAnotherKind_areAbsent) {
  const Described machine(R"({
    "volume": {"availableForImportantUsage": "much", "total": 1.5}, "thermalState": "Serious",
    "powerSources": [{"Current Capacity": "full", "Max Capacity": 99.5, "Is Charging": 1}],
    "loadAverages": [1, 2], "physicalMemory": -5})");
  const SystemInformation& information = machine.information();
  EXPECT_EQ(machine.volume().availableForImportantUsage, std::nullopt);
  EXPECT_EQ(machine.volume().total, std::nullopt);
  EXPECT_EQ(information.thermalState(), std::nullopt);
  const PowerSource battery = information.powerSources().at(0);
  EXPECT_EQ(battery.currentCapacity, std::nullopt);
  EXPECT_EQ(battery.maximumCapacity, std::nullopt);
  EXPECT_EQ(battery.isCharging, std::nullopt);
  EXPECT_FALSE(information.loadAverages());
  EXPECT_EQ(information.physicalMemory(), 0U);
}

TEST(DescribedMachine, numbers_beyondAllRange_areAbsent) {
  const Described machine(R"({"volume": {"availableForImportantUsage": 1e30, "total": 18446744073709551615},
                              "powerSources": [{"Max Capacity": -1e19}], "physicalMemory": 1e300})");
  EXPECT_EQ(machine.volume().availableForImportantUsage, std::nullopt);
  EXPECT_EQ(machine.volume().total, std::nullopt);
  EXPECT_EQ(machine.information().powerSources().at(0).maximumCapacity, std::nullopt);
  EXPECT_EQ(machine.information().physicalMemory(), 0U);
}

TEST(DescribedMachine, integers_writtenAsDecimals_count) {
  const Described machine(R"({"volume": {"total": 5.0}, "physicalMemory": 17179869184.0})");
  EXPECT_EQ(machine.volume().total, 5);
  EXPECT_EQ(machine.information().physicalMemory(), 17179869184U);
}

TEST(DescribedMachine, powerSource_saysByItsStateWhetherItIsDrawnFrom) {
  const Described machine(R"({"powerSources": [{"Power Source State": "AC Power"},
    {"Power Source State": "Battery Power"}, {"Power Source State": "Off Line"}, {"Power Source State": 1}, {}]})");
  const std::vector<PowerSource> sources = machine.information().powerSources();
  ASSERT_EQ(sources.size(), 5U);
  EXPECT_EQ(sources[0].isOnMains, true);
  EXPECT_EQ(sources[1].isOnMains, false);
  EXPECT_EQ(sources[2].isOnMains, std::nullopt);
  EXPECT_EQ(sources[3].isOnMains, std::nullopt);
  EXPECT_EQ(sources[4].isOnMains, std::nullopt);
}

TEST(DescribedMachine, description_changed_showsAtTheNextQuestion) {
  const Described machine(R"({"thermalState": "nominal"})");
  EXPECT_EQ(machine.information().thermalState(), ThermalState::nominal);
  machine.change(R"({"thermalState": "critical"})");
  EXPECT_EQ(machine.information().thermalState(), ThermalState::critical);
  machine.change("{broken");
  EXPECT_EQ(machine.information().thermalState(), std::nullopt);
}

TEST(HostMachine, condition_isTheHostsOwn) {
  const HostSystemInformation information;
  const auto memory =
      static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  EXPECT_EQ(information.physicalMemory(), memory);
  double uptime = 0;
  std::ifstream("/proc/uptime") >> uptime;
  EXPECT_NEAR(information.systemUptime(), uptime, 60);
  ASSERT_TRUE(information.loadAverages());
  EXPECT_GE(information.loadAverages()->fifteenMinutes, 0);
  EXPECT_FALSE(information.hasUbiquityIdentityToken());
  EXPECT_FALSE(information.isApplicationRunning("com.apple.finder"));
  EXPECT_EQ(information.thermalState(), std::nullopt);
  EXPECT_FALSE(information.isLowPowerModeEnabled());
}

TEST(HostMachine, volume_ofAFolder_isItsFileSystems) {
  struct statvfs volume {};
  ASSERT_EQ(statvfs(CIRROVANE_SOURCE_DIR, &volume), 0);
  EXPECT_EQ(hostVolume(CIRROVANE_SOURCE_DIR).total, static_cast<std::int64_t>(volume.f_blocks * volume.f_frsize));
  EXPECT_GT(hostVolume(CIRROVANE_SOURCE_DIR).availableForImportantUsage, 0);
}

TEST(HostMachine, volume_ofNoFolder_isUnknown) {
  for (const std::string& folder : {std::string("/no/such/folder"), std::string("/\0", 2)}) {
    EXPECT_EQ(hostVolume(folder).total, std::nullopt);
    EXPECT_EQ(hostVolume(folder).availableForImportantUsage, std::nullopt);
  }
}

class HostPowerTest : public testing::Test {
 protected:
  void addDevice(const std::string& name, const std::map<std::string, std::string>& attributes) const {
    for (const auto& [attribute, value] : attributes) {
      writeFile(folder_ / (name + "/" + attribute), value + "\n");
    }
  }
  std::vector<PowerSource> sources() const { return hostPowerSources(folder_.path()); }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

TEST_F(HostPowerTest, battery_withAPercentage_isOneOfAHundred) {
  addDevice("BAT0", {{"type", "Battery"}, {"capacity", "63"}, {"status", "Charging"}});
  ASSERT_EQ(sources().size(), 1U);
  EXPECT_EQ(sources()[0].currentCapacity, 63);
  EXPECT_EQ(sources()[0].maximumCapacity, 100);
  EXPECT_EQ(sources()[0].isCharging, true);
}

TEST_F(HostPowerTest, battery_withEnergyOrCharge_hasThatUnit) {
  addDevice("BAT0", {{"type", "Battery"}, {"energy_now", "30000000"}, {"energy_full", "60000000"}});
  addDevice("BAT1", {{"type", "Battery"}, {"charge_now", "1000"}, {"charge_full", "4000"}, {"status", "Full"}});
  ASSERT_EQ(sources().size(), 2U);
  EXPECT_EQ(sources()[0].currentCapacity, 30000000);
  EXPECT_EQ(sources()[0].maximumCapacity, 60000000);
  EXPECT_EQ(sources()[0].isCharging, std::nullopt);
  EXPECT_EQ(sources()[1].maximumCapacity, 4000);
  EXPECT_EQ(sources()[1].isCharging, false);
}

TEST_F(HostPowerTest, battery_saysByItsStatusWhetherItIsDrawnFrom) {
  const auto isOnMains = [&](const std::string& status) {
    addDevice("BAT0", {{"type", "Battery"}, {"capacity", "63"}, {"status", status}});
    return sources().at(0).isOnMains;
  };
  EXPECT_EQ(isOnMains("Discharging"), false);
  for (const char* const status : {"Charging", "Full", "Not charging"}) {
    EXPECT_EQ(isOnMains(status), true) << status;
  }
  EXPECT_EQ(isOnMains("Unknown"), std::nullopt);
  EXPECT_EQ(isOnMains(""), std::nullopt);
}

TEST_F(HostPowerTest, battery_ofAMouse_isNotTheMachines) {
  addDevice("hid-mouse", {{"type", "Battery"}, {"scope", "Device"}, {"capacity", "5"}});
  EXPECT_TRUE(sources().empty());
}

TEST_F(HostPowerTest, mainsAdapter_isNoBattery) {
  addDevice("AC", {{"type", "Mains"}, {"online", "1"}});
  EXPECT_TRUE(sources().empty());
}

TEST_F(HostPowerTest, attributes_thatAreNoNumbers_areAbsent) {
  addDevice("BAT0", {{"type", "Battery"}, {"capacity", "much"}, {"status", "Unknown"}});
  ASSERT_EQ(sources().size(), 1U);
  EXPECT_EQ(sources()[0].maximumCapacity, std::nullopt);
  EXPECT_EQ(sources()[0].isCharging, std::nullopt);
}

TEST_F(HostPowerTest, folder_missing_hasNoSources) {
  EXPECT_TRUE(hostPowerSources(folder_ / "missing").empty());
}

}  // namespace
}  // namespace cirrovane::test
