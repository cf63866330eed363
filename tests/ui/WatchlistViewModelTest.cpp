#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/WatchlistViewModel.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class WatchlistViewModelTest : public PageTest {
 protected:
  std::vector<QString> names() const { return fieldsOf(*page_->rows(), &FolderRow::name); }
  std::vector<QString> paths() const { return fieldsOf(*page_->rows(), &FolderRow::path); }
  static QString drive() { return QString::fromStdString(std::string(kDrive)); }

  void addFolder() {
    page_->addFolder();
    EXPECT_TRUE(panels_.folderPanels().empty());
    // The panel, and then what came of it.
    catchUp();
    EXPECT_EQ(panels_.folderPanels().size(), 1U);
    catchUp();
  }

  std::unique_ptr<WatchlistViewModel> page_ = open<WatchlistViewModel>();
};

TEST_F(WatchlistViewModelTest, firstLaunch_watchesICloudDrive) {
  EXPECT_FALSE(page_->isEmpty());
  EXPECT_THAT(names(), ElementsAre("iCloud Drive"));
  EXPECT_THAT(paths(), ElementsAre(drive()));
  EXPECT_EQ(page_->saveFailure(), "");
}

TEST_F(WatchlistViewModelTest, addFolder_picked_isShownAndScanned) {
  panels_.answer = "/Users/test/Desktop";
  addFolder();
  EXPECT_THAT(names(), ElementsAre("Desktop", "iCloud Drive"));
  EXPECT_THAT(paths(), ElementsAre("/Users/test/Desktop", drive()));
  EXPECT_TRUE(page_->isScanning());
}

TEST_F(WatchlistViewModelTest, addFolder_cancelled_changesNothing) {
  const RowSignals rows(*page_->rows());
  addFolder();
  EXPECT_EQ(rows.total(), 0);
  EXPECT_FALSE(page_->isScanning());
}

TEST_F(WatchlistViewModelTest, addFolder_pageGoneMeanwhile_endsWell) {
  panels_.answer = "/Users/test/Desktop";
  panels_.whileOpen = [this] { page_.reset(); };
  addFolder();
  EXPECT_EQ(dashboard_->watchlist().folders().size(), 2U);
}

TEST_F(WatchlistViewModelTest, remove_isSeenAtOnceAndScanned) {
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  catchUp();
  page_->remove(0);
  EXPECT_THAT(paths(), ElementsAre(drive()));
  EXPECT_TRUE(page_->isScanning());
  EXPECT_EQ(dashboard_->watchlist().folders().size(), 1U);
}

TEST_F(WatchlistViewModelTest, remove_last_leavesAnEmptyList) {
  page_->remove(0);
  EXPECT_TRUE(page_->isEmpty());
  EXPECT_EQ(page_->rows()->count(), 0);
}

TEST_F(WatchlistViewModelTest, remove_duringAScan_stillRemoves) {
  page_->rescan();
  page_->remove(0);
  EXPECT_TRUE(page_->isEmpty());
}

TEST_F(WatchlistViewModelTest, remove_ofARowThatIsGone_changesNothing) {
  page_->remove(1);
  page_->remove(-1);
  EXPECT_EQ(dashboard_->watchlist().folders().size(), 1U);
  EXPECT_FALSE(page_->isScanning());
}

TEST_F(WatchlistViewModelTest, remove_canBeUndone) {
  EXPECT_EQ(page_->removalNote(), "");
  page_->remove(0);
  EXPECT_EQ(page_->removalNote(), "Removed iCloud Drive");
  page_->undoRemoval();
  EXPECT_EQ(page_->removalNote(), "");
  EXPECT_THAT(paths(), ElementsAre(drive()));
}

TEST_F(WatchlistViewModelTest, remove_tenSecondsLater_isDone) {
  page_->remove(0);
  removalAlarm_.ring();
  catchUp();
  EXPECT_EQ(page_->removalNote(), "");
  page_->undoRemoval();
  EXPECT_TRUE(page_->isEmpty());
}

TEST_F(WatchlistViewModelTest, removeTwo_areCountedAndComeBackTogether) {
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  catchUp();
  page_->remove(0);
  page_->remove(0);
  EXPECT_EQ(page_->removalNote(), "Removed 2 folders");
  page_->undoRemoval();
  EXPECT_THAT(names(), ElementsAre("Desktop", "iCloud Drive"));
}

TEST_F(WatchlistViewModelTest, dropped_foldersAreWatchedAndNothingElse) {
  const QTemporaryDir dir;
  ASSERT_TRUE(QDir(dir.path()).mkdir("Thesis"));
  ASSERT_TRUE(QFile(dir.filePath("a.txt")).open(QIODevice::WriteOnly));
  EXPECT_TRUE(
      page_->addDropped({QUrl::fromLocalFile(dir.filePath("Thesis") + '/'), QUrl::fromLocalFile(dir.filePath("a.txt")),
                         QUrl("https://example.org/Folder"), QUrl::fromLocalFile(dir.filePath("gone"))}));
  EXPECT_THAT(paths(), ElementsAre(drive(), dir.filePath("Thesis")));
  EXPECT_TRUE(page_->isScanning());
}

TEST_F(WatchlistViewModelTest, dropped_noFolder_changesNothing) {
  EXPECT_FALSE(page_->addDropped({QUrl("https://example.org/Folder")}));
  EXPECT_FALSE(page_->addDropped({}));
  EXPECT_FALSE(page_->isScanning());
}

TEST_F(WatchlistViewModelTest, removedWithoutBeingSaved_isTold) {
  storage_.privateFailure = Failure{"No space left on device"};
  page_->remove(0);
  EXPECT_EQ(page_->saveFailure(), "The watchlist could not be saved: No space left on device");
}

TEST_F(WatchlistViewModelTest, addedWithoutBeingSaved_isToldUntilASaveSucceeds) {
  panels_.answer = "/Users/test/Desktop";
  storage_.privateFailure = Failure{"No space left on device"};
  addFolder();
  EXPECT_EQ(page_->saveFailure(), "The watchlist could not be saved: No space left on device");
  storage_.privateFailure.reset();
  page_->remove(0);
  EXPECT_EQ(page_->saveFailure(), "");
}

TEST_F(WatchlistViewModelTest, hostileName_isEscapedAndALongOneWhole) {
  dashboard_->watchlist().addFolder("/Users/test/\u202e" + std::string(250, 'x'));
  catchUp();
  const QString name = "\\u{202e}" + QString(250, 'x');
  EXPECT_THAT(names(), testing::Contains(name));
  EXPECT_THAT(paths(), testing::Contains("/Users/test/" + name));
}

TEST_F(WatchlistViewModelTest, equalNames_keepRowsOfTheirOwn) {
  dashboard_->watchlist().addFolder("/Users/test/a/Docs");
  dashboard_->watchlist().addFolder("/Users/test/b/Docs");
  catchUp();
  page_->remove(0);
  EXPECT_THAT(names(), ElementsAre("Docs", "iCloud Drive"));
  EXPECT_THAT(paths(), ElementsAre("/Users/test/b/Docs", drive()));
}

TEST_F(WatchlistViewModelTest, folder_beforeItsFirstScan_saysSo) {
  const FolderRow row = page_->rows()->row(0);
  EXPECT_EQ(row.health, "Not scanned yet");
  EXPECT_EQ(row.symbol, "folder");
  EXPECT_EQ(row.tone, Tone::Neutral);
}

TEST_F(WatchlistViewModelTest, folders_eachTellTheirOwnHealth) {
  dashboard_->watchlist().addFolder("/Users/test/Desktop");
  catchUp();
  const std::vector<WatchFolder> folders = dashboard_->watchlist().folders();
  SyncHealthReport report;
  report.status = HealthState::danger;
  report.folderHealth = {{folders[1].id, folders[1], 1, 0, HealthState::safe, 100},
                         {folders[0].id, folders[0], 12, 1, HealthState::danger, 40}};
  publishReport(report);
  catchUp();
  EXPECT_THAT(fieldsOf(*page_->rows(), &FolderRow::health),
              ElementsAre("Unsafe \u00b7 Score 40 \u00b7 12 files \u00b7 1 blocker",
                          "Safe \u00b7 Score 100 \u00b7 1 file \u00b7 0 blockers"));
  EXPECT_THAT(fieldsOf(*page_->rows(), &FolderRow::symbol), ElementsAre("xmark.octagon.fill", "checkmark.seal.fill"));
  EXPECT_THAT(fieldsOf(*page_->rows(), &FolderRow::tone), ElementsAre(Tone::Critical, Tone::Good));
}

TEST_F(WatchlistViewModelTest, folder_ofAStaleVerdict_hasNoColour) {
  makeSafe();
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_EQ(page_->rows()->row(0).tone, Tone::Good);
  publishStanding(VerdictStanding::slept);
  catchUp();
  EXPECT_EQ(page_->rows()->row(0).tone, Tone::Neutral);
}

TEST_F(WatchlistViewModelTest, refresh_changesNoRow) {
  page_->rescan();
  executor_.runAll();
  catchUp();
  const RowSignals rows(*page_->rows());
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_EQ(rows.total(), 0);
}

}  // namespace
}  // namespace cirrovane::test
