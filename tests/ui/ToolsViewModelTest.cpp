#include "coordinator/WebPages.h"
#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/ToolsViewModel.h"

#include <QAbstractItemModelTester>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kBrew = "/opt/homebrew/bin/brew";
constexpr int kSmartmontools = 1;
constexpr int kIperf = 2;

class ToolsViewModelTest : public PageTest {
 protected:
  ToolsViewModelTest() { commands_.makeExecutable(kBrew); }

  std::unique_ptr<ToolsViewModel> openTools() {
    auto page = open<ToolsViewModel>();
    checks_ = std::make_unique<QAbstractItemModelTester>(page->tools(),
                                                         QAbstractItemModelTester::FailureReportingMode::Fatal);
    return page;
  }
  /// The page once it knows what is installed.
  std::unique_ptr<ToolsViewModel> openDetected() {
    auto page = openTools();
    runBackground();
    return page;
  }
  /// Runs the oldest task of the background to its end, and then the main thread.
  void runBackground() {
    const std::function<void()> task = std::move(background_.front());
    background_.erase(background_.begin());
    task();
    executor_.runAll();
    catchUp();
  }
  static ToolRow row(ToolsViewModel& page, int row) { return page.tools()->row(row); }
  static std::vector<QString> states(ToolsViewModel& page) { return fieldsOf(*page.tools(), &ToolRow::state); }
  static CommandLine brewInstall(const std::string& formula) { return {kBrew, "install", formula}; }
  std::vector<CommandLine> brewRuns() const {
    std::vector<CommandLine> runs;
    for (const CommandLine& line : commands_.ran()) {
      if (line.front() == kBrew) {
        runs.push_back(line);
      }
    }
    return runs;
  }

  std::unique_ptr<QAbstractItemModelTester> checks_;
};

TEST_F(ToolsViewModelTest, catalogue_isShownInItsOrder) {
  const auto page = openTools();
  EXPECT_EQ(page->availableText(), "11 tools available");
  EXPECT_THAT(fieldsOf(*page->tools(), &ToolRow::name),
              ElementsAre("osx-cpu-temp", "smartmontools", "iperf3", "ifstat", "mtr", "speedtest-cli", "htop", "btop",
                          "fswatch", "jq", "lnav"));
  EXPECT_EQ(row(*page, kSmartmontools).purpose, "Reads SMART storage health details.");
  EXPECT_EQ(row(*page, kSmartmontools).unlocks, "Deeper disk risk diagnostics in Storage tab.");
  EXPECT_EQ(row(*page, kSmartmontools).installCommand, "brew install smartmontools");
  EXPECT_THAT(fieldsOf(*page->tools(), &ToolRow::status), Each(""));
}

TEST_F(ToolsViewModelTest, beforeTheFirstDetection_allAreBeingChecked) {
  const auto page = openTools();
  EXPECT_THAT(states(*page), Each("Checking"));
  EXPECT_EQ(page->installedCount(), 0U);
  EXPECT_EQ(page->installedText(), "0 installed");
}

TEST_F(ToolsViewModelTest, detection_knowsAToolByItsCommand) {
  commands_.makeExecutable("/usr/local/bin/smartctl");
  const auto page = openDetected();
  EXPECT_EQ(row(*page, kSmartmontools).state, "Installed");
  EXPECT_EQ(row(*page, kSmartmontools).tone, Tone::Good);
  EXPECT_EQ(row(*page, kIperf).state, "Not Installed");
  // The healthy Mac has a thermometer.
  EXPECT_EQ(page->installedText(), "2 installed");
}

TEST_F(ToolsViewModelTest, detection_withAnEmptyPath_looksIntoTheUsualFolders) {
  system_.facts.environment["PATH"] = "";
  commands_.makeExecutable("/opt/homebrew/bin/jq");
  const auto page = openDetected();
  EXPECT_THAT(states(*page), testing::Contains("Installed").Times(2));
}

TEST_F(ToolsViewModelTest, copy_putsTheCommandOnTheClipboard) {
  const auto page = openDetected();
  page->copyInstallCommand(kSmartmontools);
  EXPECT_EQ(clipboard_.text, "brew install smartmontools");
  EXPECT_EQ(row(*page, kSmartmontools).status, "Command copied");
  EXPECT_EQ(row(*page, kIperf).status, "");
}

TEST_F(ToolsViewModelTest, install_isToldFromItsBeginningToItsEnd) {
  commands_.answer(brewInstall("smartmontools"), "");
  const auto page = openDetected();
  page->install(kSmartmontools);
  EXPECT_EQ(row(*page, kSmartmontools).status, "Installing...");
  EXPECT_TRUE(row(*page, kSmartmontools).isInstalling);
  EXPECT_FALSE(row(*page, kSmartmontools).canInstall);
  commands_.makeExecutable("/opt/homebrew/bin/smartctl");
  runBackground();
  EXPECT_THAT(brewRuns(), ElementsAre(brewInstall("smartmontools")));
  EXPECT_EQ(row(*page, kSmartmontools).status, "Install complete");
  EXPECT_EQ(row(*page, kSmartmontools).state, "Installed");
  EXPECT_TRUE(row(*page, kSmartmontools).canInstall);
}

TEST_F(ToolsViewModelTest, install_thatFailsOrCannotBegin_saysSo) {
  const auto page = openDetected();
  page->install(kSmartmontools);
  runBackground();
  EXPECT_EQ(row(*page, kSmartmontools).status, "Install failed");
  EXPECT_EQ(row(*page, kSmartmontools).state, "Not Installed");
  commands_.answer(brewInstall("smartmontools"), {1, ""});
  page->install(kSmartmontools);
  EXPECT_EQ(row(*page, kSmartmontools).status, "Installing...");
  runBackground();
  EXPECT_EQ(row(*page, kSmartmontools).status, "Install failed");
  EXPECT_THAT(brewRuns(), SizeIs(2));
}

TEST_F(ToolsViewModelTest, install_withoutItsCommandAfterwards_isCompleteButNotInstalled) {
  commands_.answer(brewInstall("iperf3"), "");
  const auto page = openDetected();
  page->install(kIperf);
  runBackground();
  EXPECT_EQ(row(*page, kIperf).status, "Install complete");
  EXPECT_EQ(row(*page, kIperf).state, "Not Installed");
}

TEST_F(ToolsViewModelTest, installs_ofDifferentTools_areUnderWayTogetherAndEndInAnyOrder) {
  commands_.answer(brewInstall("iperf3"), "");
  const auto page = openDetected();
  page->install(kSmartmontools);
  page->install(kIperf);
  ASSERT_THAT(background_, SizeIs(2));
  std::swap(background_[0], background_[1]);
  runBackground();
  EXPECT_EQ(row(*page, kIperf).status, "Install complete");
  EXPECT_EQ(row(*page, kSmartmontools).status, "Installing...");
  runBackground();
  EXPECT_EQ(row(*page, kSmartmontools).status, "Install failed");
}

TEST_F(ToolsViewModelTest, install_ofAToolUnderWay_isNotStartedTwice) {
  const auto page = openDetected();
  page->install(kIperf);
  page->copyInstallCommand(kIperf);
  page->install(kIperf);
  EXPECT_THAT(background_, SizeIs(1));
  EXPECT_EQ(row(*page, kIperf).status, "Command copied");
  runBackground();
  EXPECT_EQ(row(*page, kIperf).status, "Install failed");
}

TEST_F(ToolsViewModelTest, install_duringDetection_isKnownBeforeIt) {
  commands_.answer(brewInstall("iperf3"), "");
  const auto page = openTools();
  page->install(kIperf);
  std::swap(background_[0], background_[1]);
  commands_.makeExecutable("/opt/homebrew/bin/iperf3");
  runBackground();
  EXPECT_EQ(row(*page, kIperf).state, "Installed");
  EXPECT_EQ(row(*page, kSmartmontools).state, "Checking");
  runBackground();
  EXPECT_EQ(row(*page, kSmartmontools).state, "Not Installed");
}

TEST_F(ToolsViewModelTest, pageClosed_duringAnInstall_knowsItWhenOpenedAgain) {
  commands_.answer(brewInstall("iperf3"), "");
  auto page = openDetected();
  page->install(kIperf);
  page->copyInstallCommand(kIperf);
  checks_.reset();
  page.reset();
  page = openTools();
  EXPECT_EQ(row(*page, kIperf).status, "Installing...");
  EXPECT_TRUE(row(*page, kIperf).isInstalling);
  EXPECT_EQ(row(*page, kIperf).state, "Not Installed");
  page->install(kIperf);
  // The install and the look at what is installed.
  ASSERT_THAT(background_, SizeIs(2));
  runBackground();
  EXPECT_EQ(row(*page, kIperf).status, "Install complete");
  EXPECT_THAT(brewRuns(), ElementsAre(brewInstall("iperf3")));
}

TEST_F(ToolsViewModelTest, installThatEndedWithoutThePage_isToldByTheNext) {
  auto page = openDetected();
  page->install(kIperf);
  checks_.reset();
  page.reset();
  runBackground();
  page = openTools();
  EXPECT_EQ(row(*page, kIperf).status, "Install failed");
  EXPECT_TRUE(row(*page, kIperf).canInstall);
}

TEST_F(ToolsViewModelTest, pageOpenedAgain_duringDetection_looksOnce) {
  auto page = openTools();
  checks_.reset();
  page.reset();
  page = openTools();
  EXPECT_THAT(background_, SizeIs(1));
  EXPECT_THAT(states(*page), Each("Checking"));
  runBackground();
  EXPECT_EQ(page->installedText(), "1 installed");
}

TEST_F(ToolsViewModelTest, pageOpenedAgain_looksAgainAndSaysWhatIsKnownMeanwhile) {
  auto page = openDetected();
  checks_.reset();
  page.reset();
  commands_.makeExecutable("/opt/homebrew/bin/jq");
  page = openTools();
  EXPECT_EQ(page->installedText(), "1 installed");
  runBackground();
  EXPECT_EQ(page->installedText(), "2 installed");
}

TEST_F(ToolsViewModelTest, installsThatAreGone_letTheirResultsComeToNothing) {
  auto installs =
      std::make_unique<ToolInstalls>(ToolInstaller(commands_, system_), executor_,
                                     [this](std::function<void()> task) { background_.push_back(std::move(task)); });
  installs->look();
  background_.front()();
  EXPECT_EQ(executor_.size(), 1U);
  installs.reset();
  executor_.runAll();
  EXPECT_EQ(executor_.size(), 0U);
}

TEST_F(ToolsViewModelTest, withoutBackgroundOfItsOwn_workIsDoneOnAnotherThread) {
  commands_.makeExecutable("/opt/homebrew/bin/jq");
  ToolInstalls installs({commands_, system_}, executor_);
  installs.look();
  executor_.waitForTask();
  EXPECT_EQ(installs.state("jq").isInstalled, std::nullopt);
  executor_.runAll();
  EXPECT_EQ(installs.state("jq").isInstalled, true);
}

TEST_F(ToolsViewModelTest, rowsThatAreNone_doNothing) {
  const auto page = openDetected();
  for (const int row : {-1, 11}) {
    page->install(row);
    page->copyInstallCommand(row);
  }
  EXPECT_THAT(background_, IsEmpty());
  EXPECT_EQ(clipboard_.text, "");
}

TEST_F(ToolsViewModelTest, refresh_changesNoRow) {
  const auto page = openDetected();
  page->copyInstallCommand(kIperf);
  const RowSignals changes(*page->tools());
  page->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_EQ(changes.total(), 0);
}

class ToolsWithoutHomebrewTest : public ToolsViewModelTest {
 protected:
  ToolsWithoutHomebrewTest() { commands_ = FakeCommandRunner(); }
};

TEST_F(ToolsWithoutHomebrewTest, install_doesNothing) {
  const auto page = openDetected();
  EXPECT_FALSE(page->hasHomebrew());
  EXPECT_THAT(fieldsOf(*page->tools(), &ToolRow::canInstall), Each(false));
  page->install(kIperf);
  EXPECT_THAT(background_, IsEmpty());
  EXPECT_EQ(row(*page, kIperf).status, "");
}

TEST_F(ToolsWithoutHomebrewTest, homebrewPage_opensInTheBrowser) {
  openDetected()->openHomebrewPage();
  EXPECT_THAT(workspace_.opened(), ElementsAre(kHomebrewPage));
}

TEST_F(ToolsWithoutHomebrewTest, homebrewThatCame_isSeenAtTheNextRefresh) {
  const auto page = openDetected();
  commands_.makeExecutable("/usr/local/bin/brew");
  page->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_TRUE(page->hasHomebrew());
  EXPECT_THAT(fieldsOf(*page->tools(), &ToolRow::canInstall), Each(true));
}

}  // namespace
}  // namespace cirrovane::test
