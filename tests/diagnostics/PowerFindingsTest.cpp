#include "tests/diagnostics/MachineFixture.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class PowerFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const { return service().powerFindings(report_).findings; }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }
  Row batteryAt(double percent) {
    system_.facts.powerSources = {{percent, 100, false}};
    return row("Battery level").value_or(Row());
  }
};

const Row kNoBattery = {info, "Battery level", "Unavailable on this device or power source."};

TEST_F(PowerFindings, healthyMac_givesThreeRowsInOrder) {
  EXPECT_THAT(rowsOf(findings()), ElementsAre(Row{ok, "Battery level", "87%"}, Row{ok, "Charging", "Charging"},
                                              Row{ok, "Low Power Mode", "Disabled"}));
}

TEST_F(PowerFindings, everythingWrong_givesFourRowsInOrder) {
  system_.facts.powerSources = {{3, 100, false}};
  system_.facts.isLowPowerModeEnabled = true;
  report_.metrics.pendingUploads = 1;
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{warning, "Battery level", "3%"}, Row{info, "Charging", "Not charging"},
                          Row{warning, "Low Power Mode", "Enabled"},
                          Row{warning, "Upload power risk",
                              "Pending uploads exist; avoid battery-critical states before completion."}));
}

TEST_F(PowerFindings, everyFinding_isOfPowerAndOfNow) {
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::power)));
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::observedAt, clock_.now())));
}

TEST_F(PowerFindings, noCommandIsRun) {
  findings();
  EXPECT_THAT(commands_.ran(), IsEmpty());
}

TEST_F(PowerFindings, battery_below15Percent_isAWarning) {
  EXPECT_EQ(batteryAt(0), (Row{warning, "Battery level", "0%"}));
  EXPECT_EQ(batteryAt(14), (Row{warning, "Battery level", "14%"}));
  EXPECT_EQ(batteryAt(14.4), (Row{warning, "Battery level", "14%"}));
}

TEST_F(PowerFindings, battery_from15PercentAsRounded_isOk) {
  EXPECT_EQ(batteryAt(14.6), (Row{ok, "Battery level", "15%"}));
  EXPECT_EQ(batteryAt(15), (Row{ok, "Battery level", "15%"}));
  EXPECT_EQ(batteryAt(100), (Row{ok, "Battery level", "100%"}));
}

TEST_F(PowerFindings, desktopWithoutABattery_hasNoLevelAndNoCharging) {
  system_.facts.powerSources.clear();
  EXPECT_EQ(row("Battery level"), kNoBattery);
  EXPECT_EQ(row("Charging"), std::nullopt);
}

TEST_F(PowerFindings, sourceWithoutCapacity_isNoBattery) {
  system_.facts.powerSources = {{50, std::nullopt, true}};
  EXPECT_EQ(row("Battery level"), kNoBattery);
  EXPECT_EQ(row("Charging"), std::nullopt);
}

TEST_F(PowerFindings, charging_isSaidOnlyWhereItIsKnown) {
  system_.facts.powerSources = {{50, 100, true}};
  EXPECT_EQ(row("Charging"), (Row{ok, "Charging", "Charging"}));
  system_.facts.powerSources = {{50, 100, false}};
  EXPECT_EQ(row("Charging"), (Row{info, "Charging", "Not charging"}));
  system_.facts.powerSources = {{50, 100, std::nullopt}};
  EXPECT_EQ(row("Charging"), std::nullopt);
  EXPECT_EQ(row("Battery level"), (Row{ok, "Battery level", "50%"}));
}

TEST_F(PowerFindings, lowPowerMode_isAWarningWhenEnabled) {
  EXPECT_EQ(row("Low Power Mode"), (Row{ok, "Low Power Mode", "Disabled"}));
  system_.facts.isLowPowerModeEnabled = true;
  EXPECT_EQ(row("Low Power Mode"), (Row{warning, "Low Power Mode", "Enabled"}));
}

TEST_F(PowerFindings, uploadRisk_beginsAtOnePendingUpload) {
  report_.metrics.pendingUploads = 0;
  EXPECT_EQ(row("Upload power risk"), std::nullopt);
  report_.metrics.pendingUploads = 1;
  EXPECT_EQ(row("Upload power risk"), (Row{warning, "Upload power risk",
                                           "Pending uploads exist; avoid battery-critical states before completion."}));
}

}  // namespace
}  // namespace cirrovane::test
