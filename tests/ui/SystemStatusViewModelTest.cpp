#include "tests/ui/PageFixture.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/SystemStatusViewModel.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class SystemStatusViewModelTest : public PageTest {
 protected:
  void publish(const SystemStatusSnapshot& status) {
    setPublished(dashboard_->publishedSystemStatus(), status);
    catchUp();
  }
  void publishMemory(std::optional<std::uint64_t> used, std::uint64_t total) {
    SystemStatusSnapshot status;
    status.memoryUsedBytes = used;
    status.memoryTotalBytes = total;
    publish(status);
  }

  static ValueRow row(const QString& label, const QString& value) { return {.label = label, .value = value}; }

  std::unique_ptr<SystemStatusViewModel> page_ = open<SystemStatusViewModel>();
};

TEST_F(SystemStatusViewModelTest, beforeTheFirstSample_allIsUnknown) {
  EXPECT_THAT(rowsOf(*page_->cpu()),
              ElementsAre(row("Usage", "Unknown"), row("Load", "- / - / -"), row("Thermal State", "Unknown"),
                          row("Temperature", "Unknown (optional sensor required)")));
  EXPECT_THAT(rowsOf(*page_->memory()), ElementsAre(row("Used", "Unknown"), row("Total", "0 bytes")));
  EXPECT_THAT(rowsOf(*page_->storage()), ElementsAre(row("Free", "Unknown"), row("Total", "Unknown")));
  EXPECT_THAT(rowsOf(*page_->power()), ElementsAre(row("Battery", "Unknown"), row("Charging", "Unknown"),
                                                   row("Low Power Mode", "Off"), row("Uptime", "0 seconds")));
  EXPECT_THAT(rowsOf(*page_->network()), ElementsAre(row("iCloud Reachability", "Unknown")));
  EXPECT_THAT(rowsOf(*page_->live()),
              ElementsAre(row("State", "Not live"), row("Reason", "None"), row("Verdict Confirmed", "Not scanned yet"),
                          row("Changes Missed", "0")));
  EXPECT_FALSE(page_->hasMemoryGauge());
}

TEST_F(SystemStatusViewModelTest, verdictThatIsLive_isConfirmedNow) {
  publishReport(makeReport());
  publishLiveness({LivenessState::live, "", 0});
  catchUp();
  EXPECT_THAT(rowsOf(*page_->live()), ElementsAre(row("State", "Live"), row("Reason", "None"),
                                                  row("Verdict Confirmed", "Now"), row("Changes Missed", "0")));
}

TEST_F(SystemStatusViewModelTest, verdictThatIsNotLive_tellsWhyAndSinceWhen) {
  publishReport(makeReport());
  publishLiveness({LivenessState::notLive, "A scan found a change that had not been told.", 2});
  catchUp();
  EXPECT_THAT(rowsOf(*page_->live()),
              ElementsAre(row("State", "Not live"), row("Reason", "A scan found a change that had not been told."),
                          row("Verdict Confirmed", "6:25:00 PM"), row("Changes Missed", "2")));
}

TEST_F(SystemStatusViewModelTest, fullSample_isToldWhole) {
  SystemStatusSnapshot status;
  status.cpuUsagePercent = 7.25;
  status.load1m = 1.52;
  status.load5m = 1.31;
  status.load15m = 1.2;
  status.cpuTemperatureC = 61.84;
  status.thermalState = "Nominal";
  status.memoryUsedBytes = 8'589'934'592;
  status.memoryTotalBytes = 17'179'869'184;
  status.diskFreeBytes = 212'500'000'000;
  status.diskTotalBytes = 494'384'795'648;
  status.batteryPercent = 87;
  status.batteryCharging = true;
  status.lowPowerMode = true;
  status.networkReachable = false;
  status.uptimeSeconds = 273'600;
  publish(status);
  EXPECT_THAT(rowsOf(*page_->cpu()), ElementsAre(row("Usage", "7.2%"), row("Load", "1.52 / 1.31 / 1.20"),
                                                 row("Thermal State", "Nominal"), row("Temperature", "61.8 C")));
  EXPECT_THAT(rowsOf(*page_->memory()),
              ElementsAre(row("Used", "8589934592 bytes"), row("Total", "17179869184 bytes")));
  EXPECT_THAT(rowsOf(*page_->storage()),
              ElementsAre(row("Free", "212500000000 bytes"), row("Total", "494384795648 bytes")));
  EXPECT_THAT(rowsOf(*page_->power()), ElementsAre(row("Battery", "87%"), row("Charging", "Yes"),
                                                   row("Low Power Mode", "On"), row("Uptime", "273600 seconds")));
  EXPECT_THAT(rowsOf(*page_->network()), ElementsAre(row("iCloud Reachability", "Not Reachable")));
  EXPECT_EQ(page_->memoryUsageText(), "50%");
}

TEST_F(SystemStatusViewModelTest, load_withOneAbsent_hasADashInItsPlace) {
  SystemStatusSnapshot status;
  status.load1m = 0.81;
  status.load15m = 0.64;
  publish(status);
  EXPECT_EQ(page_->cpu()->row(1), row("Load", "0.81 / - / 0.64"));
}

TEST_F(SystemStatusViewModelTest, memoryTone_atItsBounds) {
  publishMemory(7'000, 10'000);
  EXPECT_EQ(page_->memoryUsageTone(), Tone::Good);
  publishMemory(7'001, 10'000);
  EXPECT_EQ(page_->memoryUsageTone(), Tone::Warning);
  publishMemory(8'500, 10'000);
  EXPECT_EQ(page_->memoryUsageTone(), Tone::Warning);
  publishMemory(8'501, 10'000);
  EXPECT_EQ(page_->memoryUsageTone(), Tone::Critical);
}

TEST_F(SystemStatusViewModelTest, noTotalMemory_noGaugeAndNoDivision) {
  publishMemory(1'000'000, 0);
  EXPECT_FALSE(page_->hasMemoryGauge());
  EXPECT_THAT(rowsOf(*page_->memory()), ElementsAre(row("Used", "1000000 bytes"), row("Total", "0 bytes")));
}

TEST_F(SystemStatusViewModelTest, refresh_duringACycle_changesNothing) {
  page_->rescan();
  EXPECT_TRUE(page_->isScanning());
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_FALSE(page_->isScanning());
  EXPECT_EQ(dashboard_->historyStore().snapshots().size(), 1U);
}

}  // namespace
}  // namespace cirrovane::test
