#include "diagnostics/PowerReading.h"

#include <limits>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

TEST(BatteryStatus, noSources_haveNoBattery) {
  const BatteryStatus battery = batteryStatus({});
  EXPECT_EQ(battery.percent, std::nullopt);
  EXPECT_EQ(battery.charging, std::nullopt);
}

TEST(BatteryStatus, firstSourceWithACapacity_isTheBattery) {
  const BatteryStatus battery =
      batteryStatus({{1, std::nullopt, true}, {2, 0, true}, {3, -5, true}, {40, 80, false}, {90, 100, true}});
  EXPECT_EQ(battery.percent, 50);
  EXPECT_EQ(battery.charging, false);
}

TEST(BatteryStatus, noSourceWithACapacity_isNoBattery) {
  const BatteryStatus battery = batteryStatus({{50, std::nullopt, true}, {50, 0, false}});
  EXPECT_EQ(battery.percent, std::nullopt);
  EXPECT_EQ(battery.charging, std::nullopt);
}

TEST(BatteryStatus, capacityOfOne_isEnough) {
  EXPECT_EQ(batteryStatus({{1, 1, {}}}).percent, 100);
}

TEST(BatteryStatus, missingCharge_countsAsZero) {
  EXPECT_EQ(batteryStatus({{std::nullopt, 100, true}}).percent, 0);
}

TEST(BatteryStatus, missingChargingFlag_staysUnknownThoughAnotherSourceHasOne) {
  const BatteryStatus battery = batteryStatus({{50, 100, std::nullopt}, {50, 100, true}});
  EXPECT_EQ(battery.percent, 50);
  EXPECT_EQ(battery.charging, std::nullopt);
}

TEST(BatteryStatus, percent_isRoundedToTheNearestInteger) {
  EXPECT_EQ(batteryStatus({{1, 3, {}}}).percent, 33);
  EXPECT_EQ(batteryStatus({{2, 3, {}}}).percent, 67);
  EXPECT_EQ(batteryStatus({{1, 8, {}}}).percent, 13);
  EXPECT_EQ(batteryStatus({{-1, 8, {}}}).percent, -13);
  EXPECT_EQ(batteryStatus({{4'321, 4'790, {}}}).percent, 90);
}

TEST(BatteryStatus, moreThanFull_isNotCutOff) {
  EXPECT_EQ(batteryStatus({{103, 100, {}}}).percent, 103);
}

TEST(BatteryStatus, chargeBeyondAllIntegers_isStillANumber) {
  EXPECT_GT(batteryStatus({{std::numeric_limits<double>::max(), 1, {}}}).percent, 1'000'000);
  EXPECT_LT(batteryStatus({{-std::numeric_limits<double>::max(), 1, {}}}).percent, -1'000'000);
}

PowerSource battery(std::optional<bool> isOnMains, std::optional<bool> isCharging = {}) {
  return {.currentCapacity = 40, .maximumCapacity = 80, .isCharging = isCharging, .isOnMains = isOnMains};
}

TEST(PowerSupply, noBattery_isOnMains) {
  EXPECT_EQ(powerSupply({}), (PowerSupply{true, std::nullopt}));
  EXPECT_EQ(powerSupply({{50, std::nullopt, std::nullopt, std::nullopt}}), (PowerSupply{true, std::nullopt}));
}

TEST(PowerSupply, battery_thatSaysWhetherItIsDrawnFrom_isBelieved) {
  EXPECT_EQ(powerSupply({battery(true, false)}), (PowerSupply{true, 50}));
  EXPECT_EQ(powerSupply({battery(false, true)}), (PowerSupply{false, 50}));
}

TEST(PowerSupply, batteryThatDoesNotSay_isOnMainsWhileItCharges) {
  EXPECT_EQ(powerSupply({battery(std::nullopt, true)}), (PowerSupply{true, 50}));
  EXPECT_EQ(powerSupply({battery(std::nullopt, false)}), (PowerSupply{false, 50}));
  EXPECT_EQ(powerSupply({battery(std::nullopt)}), (PowerSupply{false, 50}));
}

TEST(PowerSupply, oneOfTwoBatteries_drawnFrom_isNotOnMains) {
  EXPECT_EQ(powerSupply({battery(true), battery(false)}), (PowerSupply{false, 50}));
  EXPECT_EQ(powerSupply({battery(std::nullopt), battery(true)}), (PowerSupply{true, 50}));
}

TEST(PowerSupply, sourceWithoutACapacity_thatIsDrawnFrom_isNotOnMains) {
  EXPECT_EQ(powerSupply({{50, std::nullopt, std::nullopt, false}}), (PowerSupply{false, std::nullopt}));
}

TEST(PowerSupply, percentBeyondAllIntegers_isStillANumber) {
  EXPECT_GT(powerSupply({{std::numeric_limits<double>::max(), 1, {}, {}}}).batteryPercent, 1'000'000);
}

TEST(ThermalStateName, everyState_hasItsName) {
  EXPECT_EQ(thermalStateName(ThermalState::nominal), "Nominal");
  EXPECT_EQ(thermalStateName(ThermalState::fair), "Fair");
  EXPECT_EQ(thermalStateName(ThermalState::serious), "Serious");
  EXPECT_EQ(thermalStateName(ThermalState::critical), "Critical");
  EXPECT_EQ(thermalStateName(std::nullopt), "Unknown");
}

}  // namespace
}  // namespace cirrovane
