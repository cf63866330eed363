#include "base/JSONReader.h"
#include "coordinator/DashboardViewModel.h"
#include "coordinator/Services.h"
#include "tests/coordinator/Builders.h"
#include "tests/support/FakePanels.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/ManualAlarm.h"
#include "tests/support/ManualTimer.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kEnabled = "guardrailNotificationsEnabled";

class ServicesOfAMachine : public testing::Test {
 protected:
  std::string drivePath() const { return folder_ / "Users/demo/Library/Mobile Documents/com~apple~CloudDocs"; }
  std::string storePath(const std::string& name) const {
    return folder_ / "Users/demo/Library/Application Support/com.quillmere.Cirrovane/" + name;
  }
  /// A file of iCloud Drive that is on its way, last changed so many seconds ago.
  void addUploadingFile(const std::string& name, int secondsAgo) const {
    writeFile(drivePath() + "/" + name, "text");
    setICloudAttribute(drivePath() + "/" + name, "isUploaded=false\nisUploading=true\ndownloadingStatus=current\n");
    const std::chrono::duration<double> now = SystemClock().now().time_since_epoch();
    setModified(drivePath() + "/" + name, now.count() - secondsAgo);
  }
  BlockerReason reasonOf(const std::string& name) const {
    const Services services = makeServices(machine_);
    const SyncHealthReport report = services.engine->scan(services.watchlist->folders());
    for (const SyncBlocker& blocker : report.blockers) {
      if (blocker.filePath.ends_with("/" + name)) {
        return blocker.reason;
      }
    }
    ADD_FAILURE() << "no blocker for " << name;
    return {};
  }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  Machine machine_ = std::move(*makeMachine((writeFile(folder_ / "machine.json", "{}"), folder_.path())));
};

TEST_F(ServicesOfAMachine, services_areAllThereButTheNotifications) {
  const Services services = makeServices(machine_);
  EXPECT_NE(services.watchlist, nullptr);
  EXPECT_NE(services.historyStore, nullptr);
  EXPECT_NE(services.engine, nullptr);
  EXPECT_NE(services.diagnosticsService, nullptr);
  EXPECT_NE(services.systemStatusService, nullptr);
  EXPECT_NE(services.incidentStore, nullptr);
  EXPECT_EQ(services.notificationService, nullptr);
}

TEST_F(ServicesOfAMachine, engine_takesAnUploadForStalledAfterTwentyMinutes) {
  addUploadingFile("old.txt", 1230);
  addUploadingFile("new.txt", 1170);
  EXPECT_EQ(reasonOf("old.txt"), BlockerReason::stalledUpload);
  EXPECT_EQ(reasonOf("new.txt"), BlockerReason::notUploaded);
}

TEST_F(ServicesOfAMachine, progress_countsTheScannedFiles) {
  addUploadingFile("a.txt", 1);
  ScanProgress progress;
  const Services services = makeServices(machine_, &progress);
  services.engine->scan(services.watchlist->folders());
  EXPECT_EQ(progress.files(), 1);
}

TEST_F(ServicesOfAMachine, wholeCycleInOneGo_isKeptForTheNextLaunch) {
  addUploadingFile("a.txt", 1);
  InlineExecutor executor;
  ManualTimer timer;
  FakePanels panels;
  FakeWorkspace workspace;
  ManualAlarm alarm;
  {
    DashboardViewModel dashboard(makeServices(machine_),
                                 {{executor, executor, executor, executor},
                                  *machine_.fileStorage,
                                  *machine_.userDefaults,
                                  *machine_.clock,
                                  *machine_.monotonicClock},
                                 {timer, panels, workspace, *machine_.fileSystem, *machine_.timeText, alarm, alarm});
    dashboard.refresh();
    EXPECT_FALSE(dashboard.isScanning());
    EXPECT_THAT(dashboard.report().blockers, SizeIs(1));
  }
  const Services next = makeServices(machine_);
  EXPECT_THAT(next.watchlist->folders(), SizeIs(1));
  EXPECT_THAT(next.historyStore->snapshots(), SizeIs(1));
  EXPECT_THAT(next.incidentStore->records(), testing::Not(IsEmpty()));
  EXPECT_NE(readFile(storePath("incidents.json")), "");
  EXPECT_EQ(machine_.userDefaults->value("lastKnownSafeToClose"), std::nullopt);
}

TEST_F(ServicesOfAMachine, exportOnTheDisk_isThePacketOrTellsWhyNot) {
  InlineExecutor executor;
  ManualTimer timer;
  FakePanels panels;
  FakeWorkspace workspace;
  ManualAlarm alarm;
  DashboardViewModel dashboard(makeServices(machine_),
                               {{executor, executor, executor, executor},
                                *machine_.fileStorage,
                                *machine_.userDefaults,
                                *machine_.clock,
                                *machine_.monotonicClock},
                               {timer, panels, workspace, *machine_.fileSystem, *machine_.timeText, alarm, alarm});
  panels.answer = folder_ / "proof.json";
  writeFile(*panels.answer, "an older one");
  dashboard.exportProofPacket();
  EXPECT_EQ(dashboard.exportNote(), "Proof packet exported to proof.json.");
  EXPECT_TRUE(decodeJSON<ProofPacket>(readFile(*panels.answer)));
  panels.answer = folder_ / "machine.json/proof.json";
  dashboard.exportProofPacket();
  EXPECT_THAT(dashboard.exportNote().value_or(""), testing::MatchesRegex("Export failed: .+"));
}

TEST(RegisterDefaults, switchNeverSet_isSetOn) {
  FakeUserDefaults defaults;
  registerDefaults(defaults);
  EXPECT_EQ(defaults.boolean(kEnabled), true);
  EXPECT_EQ(defaults.values().size(), 1U);
}

TEST(RegisterDefaults, switchWithAnyValue_isKept) {
  for (const DefaultsValue& value :
       {DefaultsValue(false), DefaultsValue(true), DefaultsValue("no"), DefaultsValue(OtherDefaultsValue())}) {
    FakeUserDefaults defaults;
    defaults.hold(kEnabled, value);
    registerDefaults(defaults);
    EXPECT_EQ(defaults.values().at(kEnabled), value);
  }
}

TEST(RegisterDefaults, switchThatCannotBeStored_isNoError) {
  FakeUserDefaults defaults;
  defaults.failure = Failure{"disk full"};
  registerDefaults(defaults);
  EXPECT_EQ(defaults.value(kEnabled), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
