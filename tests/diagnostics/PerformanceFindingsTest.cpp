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

class PerformanceFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const { return service().performanceFindings(newProbes()).findings; }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }
  Row loadRow(double oneMinute, double fiveMinutes, double fifteenMinutes) {
    system_.facts.loadAverages = LoadAverages{oneMinute, fiveMinutes, fifteenMinutes};
    return row("CPU load average").value_or(Row());
  }
};

const Row kProbe = {info, "Temperature probe", "osx-cpu-temp detected for exact temperature readings."};
const Row kNoProbe = {warning, "Temperature probe",
                      "Exact CPU temperature unavailable by default. Install osx-cpu-temp from Tools tab."};

TEST_F(PerformanceFindings, healthyMac_givesFourRowsInOrder) {
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{ok, "CPU load average", "1m 1.52 \xC2\xB7 5m 1.31 \xC2\xB7 15m 1.20"},
                          Row{info, "CPU usage sample", "CPU usage: 7.31% user, 10.52% sys, 82.15% idle "}, kProbe,
                          Row{ok, "Thermal state", "Nominal"}));
}

TEST_F(PerformanceFindings, everythingWrong_givesTheProbeAndTheThermalState) {
  system_.facts.loadAverages.reset();
  system_.facts.thermalState.reset();
  commands_ = FakeCommandRunner();
  EXPECT_THAT(rowsOf(findings()), ElementsAre(kNoProbe, Row{ok, "Thermal state", "Unknown"}));
}

TEST_F(PerformanceFindings, everyFinding_isOfPerformanceAndOfNow) {
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::performance)));
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::observedAt, clock_.now())));
}

TEST_F(PerformanceFindings, commands_runInOrderWithTheirExactArguments) {
  findings();
  EXPECT_THAT(commands_.ran(), ElementsAre(CommandLine{"/usr/bin/top", "-l", "1", "-n", "0"},
                                           CommandLine{"/usr/bin/which", "osx-cpu-temp"}));
}

TEST_F(PerformanceFindings, load_ofOneMinuteAbove6_isAWarning) {
  EXPECT_EQ(loadRow(6.01, 0, 0), (Row{warning, "CPU load average", "1m 6.01 \xC2\xB7 5m 0.00 \xC2\xB7 15m 0.00"}));
  EXPECT_EQ(loadRow(6.001, 1, 1), (Row{warning, "CPU load average", "1m 6.00 \xC2\xB7 5m 1.00 \xC2\xB7 15m 1.00"}));
  EXPECT_EQ(loadRow(123.456, 7, 8), (Row{warning, "CPU load average", "1m 123.46 \xC2\xB7 5m 7.00 \xC2\xB7 15m 8.00"}));
}

TEST_F(PerformanceFindings, load_ofOneMinuteUpTo6_isOkWhateverTheOthers) {
  EXPECT_EQ(loadRow(6, 50, 60), (Row{ok, "CPU load average", "1m 6.00 \xC2\xB7 5m 50.00 \xC2\xB7 15m 60.00"}));
  EXPECT_EQ(loadRow(0, 0, 0), (Row{ok, "CPU load average", "1m 0.00 \xC2\xB7 5m 0.00 \xC2\xB7 15m 0.00"}));
}

TEST_F(PerformanceFindings, load_thatIsNotGiven_isLeftOut) {
  system_.facts.loadAverages.reset();
  EXPECT_EQ(row("CPU load average"), std::nullopt);
}

TEST_F(PerformanceFindings, usage_isTheFirstLineThatSaysSo) {
  const auto usageIn = [&](const std::string& output) {
    commands_.answer(kTop, output);
    return row("CPU usage sample").value_or(Row()).detail;
  };
  EXPECT_EQ(usageIn("\n\nLoad\n  CPU usage: first\t\nCPU usage: second\n"), "  CPU usage: first\t");
  EXPECT_EQ(usageIn("CPU usage\nx CPU usage: y"), "x CPU usage: y");
  EXPECT_EQ(usageIn("CPU usage: a\r\nb"), "CPU usage: a");
}

TEST_F(PerformanceFindings, usage_withoutSuchALine_isLeftOut) {
  for (const char* output : {"", "Processes: 1\n", "CPU usage 5%\n", "cpu usage: 5%\n", "CPU\nusage:\n"}) {
    commands_.answer(kTop, output);
    EXPECT_EQ(row("CPU usage sample"), std::nullopt) << output;
  }
}

TEST_F(PerformanceFindings, usage_withoutOutput_isLeftOut) {
  inEveryWayWithoutOutput(kTop, [&] { EXPECT_EQ(row("CPU usage sample"), std::nullopt); });
}

TEST_F(PerformanceFindings, probe_isDetectedByAnyOutputOfTheLookUp) {
  commands_.answer(kTemperatureLookup, "");
  EXPECT_EQ(row("Temperature probe"), kProbe);
  inEveryWayWithoutOutput(kTemperatureLookup, [&] { EXPECT_EQ(row("Temperature probe"), kNoProbe); });
}

TEST_F(PerformanceFindings, thermalState_isAWarningFromSeriousOn) {
  const auto rowIn = [&](std::optional<ThermalState> state) {
    system_.facts.thermalState = state;
    return row("Thermal state").value_or(Row());
  };
  EXPECT_EQ(rowIn(ThermalState::nominal), (Row{ok, "Thermal state", "Nominal"}));
  EXPECT_EQ(rowIn(ThermalState::fair), (Row{ok, "Thermal state", "Fair"}));
  EXPECT_EQ(rowIn(ThermalState::serious), (Row{warning, "Thermal state", "Serious"}));
  EXPECT_EQ(rowIn(ThermalState::critical), (Row{warning, "Thermal state", "Critical"}));
  EXPECT_EQ(rowIn(std::nullopt), (Row{ok, "Thermal state", "Unknown"}));
}

}  // namespace
}  // namespace cirrovane::test
