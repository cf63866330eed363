#include "tests/coordinator/DashboardFixture.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/NotedClipboard.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/ShellViewModel.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class ShellViewModelTest : public DashboardMachine {
 protected:
  ShellViewModelTest() : DashboardMachine({executor_, executor_, executor_, executor_}) {
    bundle_.info = {{"CFBundleShortVersionString", "1.2"}, {"CFBundleVersion", "45"}};
    launch();
    updates_ =
        std::make_unique<AppUpdateService>(bundle_, defaults_, workspace_, timeText_, clock_, [] { return nullptr; });
    shell_ = std::make_unique<ShellViewModel>(*dashboard_, *updates_, clipboard_, workspace_, kAppTabs.front());
  }

  ManualExecutor executor_;
  // Timers need an application object.
  int argumentCount_ = 1;
  char name_[6] = "tests";
  char* arguments_[1] = {name_};
  QCoreApplication application_{argumentCount_, arguments_};
  NotedClipboard clipboard_;
  std::unique_ptr<AppUpdateService> updates_;
  std::unique_ptr<ShellViewModel> shell_;
};

TEST_F(ShellViewModelTest, selectedTab_unknown_isTheOverview) {
  shell_->select("faq");
  EXPECT_EQ(shell_->selectedTab(), "faq");
  shell_->select("nonsense");
  EXPECT_EQ(shell_->selectedTab(), "overview");
}

TEST_F(ShellViewModelTest, extraTabsLabel_namesTheChosenOneOfThem) {
  EXPECT_EQ(shell_->extraTabsLabel(), "More");
  shell_->select("performance");
  EXPECT_EQ(shell_->extraTabsLabel(), "Performance");
  shell_->select("finder");
  EXPECT_EQ(shell_->extraTabsLabel(), "More");
}

TEST_F(ShellViewModelTest, tabs_areOfferedWithTheirTitlesAndSymbols) {
  EXPECT_EQ(shell_->primaryTabs()->count(), 6);
  EXPECT_EQ(shell_->primaryTabs()->row(1), (EntryRow{.name = "why", .title = "Why", .symbol = "checklist"}));
  EXPECT_EQ(shell_->extraTabs()->count(), 7);
  EXPECT_EQ(shell_->extraTabs()->row(6),
            (EntryRow{.name = "tools", .title = "Tools", .symbol = "square.and.arrow.down"}));
  EXPECT_EQ(shell_->extraTabs()->indexOf("faq"), 5);
}

TEST_F(ShellViewModelTest, appearing_startsTheTimerOnceAndRefreshesEachTime) {
  shell_->appeared();
  EXPECT_TRUE(shell_->isScanning());
  EXPECT_EQ(timer_.starts().size(), 1U);
  shell_->appeared();
  EXPECT_EQ(timer_.starts().size(), 1U);
}

TEST_F(ShellViewModelTest, updateStatusLine_followsTheService) {
  EXPECT_EQ(shell_->updateStatusLine(), "Running v1.2 (45)");
  const QSignalSpy told(shell_.get(), &ShellViewModel::updateStatusLineChanged);
  shell_->checkForUpdates();
  EXPECT_EQ(told.size(), 1);
  EXPECT_EQ(shell_->updateStatusLine(), "Opened downloads page at 6:25 PM");
  EXPECT_EQ(workspace_.opened().size(), 1U);
}

TEST_F(ShellViewModelTest, releaseNotes_openInTheBrowser) {
  shell_->openReleaseNotes();
  EXPECT_THAT(workspace_.opened(), ElementsAre("https://cirrovane.example.com/release-notes"));
}

TEST_F(ShellViewModelTest, build_copied_isOnTheClipboardAndSaysSo) {
  EXPECT_EQ(shell_->buildLabel(), "Build v1.2 (45)");
  shell_->copyBuild();
  EXPECT_EQ(clipboard_.text, "v1.2 (45)");
  EXPECT_EQ(shell_->buildLabel(), "Copied v1.2 (45)");
}

}  // namespace
}  // namespace cirrovane::test
