#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/AllBlockersViewModel.h"
#include "ui/viewmodels/Text.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class AllBlockersViewModelTest : public PageTest {
 protected:
  std::unique_ptr<AllBlockersViewModel> openSheet(const QString& folder = {}) {
    auto sheet = std::make_unique<AllBlockersViewModel>(
        [this](std::function<void()> task) { background_.push_back(std::move(task)); });
    sheet->setFolder(folder);
    checks_ = std::make_unique<QAbstractItemModelTester>(sheet->rows(),
                                                         QAbstractItemModelTester::FailureReportingMode::Fatal);
    return openWith(std::move(sheet));
  }
  /// Runs all work in the background, and then the main thread.
  void runBackground() {
    while (!background_.empty()) {
      const std::function<void()> task = std::move(background_.front());
      background_.erase(background_.begin());
      task();
      executor_.runAll();
    }
  }
  /// Publishes a report, and lets the sheet show it.
  void publish(std::vector<SyncBlocker> blockers) {
    announce(std::move(blockers));
    runBackground();
  }
  /// Publishes a report, and lets the sheet begin its work.
  void announce(std::vector<SyncBlocker> blockers) {
    SyncHealthReport report;
    report.blockers = std::move(blockers);
    report.folderHealth = folders_;
    publishReport(std::move(report));
    catchUp();
  }
  void watch(const std::string& name, const std::string& path) {
    FolderHealth health;
    health.folder = makeFolder(name, path, static_cast<std::uint8_t>(folders_.size() + 1));
    health.id = health.folder.id;
    dashboard_->watchlist().restoreFolder(health.folder);
    folders_.push_back(health);
  }
  static QString idText(const FolderHealth& health) { return toQString(health.id.text()); }
  std::vector<QString> paths() const {
    std::vector<QString> paths;
    for (int row = 0; row < sheet_->rows()->count(); ++row) {
      paths.push_back(sheet_->rows()->row(row).path);
    }
    return paths;
  }
  static std::vector<QString> titles(const ListModel<EntryRow>& list) { return fieldsOf(list, &EntryRow::title); }

  std::vector<std::function<void()>> background_;
  std::vector<FolderHealth> folders_;
  std::unique_ptr<QAbstractItemModelTester> checks_;
  std::unique_ptr<AllBlockersViewModel> sheet_ = openSheet();
};

TEST_F(AllBlockersViewModelTest, beforeTheFirstScan_saysThatNobodyHasLooked) {
  EXPECT_FALSE(sheet_->isEmpty());
  EXPECT_EQ(sheet_->countText(), "");
  runBackground();
  EXPECT_TRUE(sheet_->isEmpty());
  EXPECT_EQ(sheet_->emptyTitle(), "Not scanned yet");
  publish({});
  EXPECT_EQ(sheet_->emptyTitle(), "No blockers detected");
  EXPECT_FALSE(sheet_->isNarrowed());
}

TEST_F(AllBlockersViewModelTest, allBlockers_areShownInTheReportsOrder) {
  publish(makeBlockers(BlockerReason::notUploaded, 8));
  EXPECT_EQ(sheet_->countText(), "8 blockers");
  EXPECT_FALSE(sheet_->isEmpty());
  ASSERT_EQ(sheet_->rows()->count(), 8);
  const ListedBlocker row = sheet_->rows()->row(7);
  EXPECT_EQ(row.name, "notUploaded7");
  EXPECT_EQ(row.reason, "Not Uploaded");
  EXPECT_EQ(row.folderName, "Work");
  EXPECT_EQ(row.path, "/notUploaded7");
  EXPECT_EQ(row.details, "Details.");
  EXPECT_EQ(row.amount, "");
  EXPECT_FALSE(row.isStuck);
}

TEST_F(AllBlockersViewModelTest, rows_tellSizeAndWait_andWhatIsStuck) {
  SyncBlocker fresh = makeBlocker(BlockerReason::notUploaded, "/fresh");
  fresh.fileSize = 1'200'000;
  SyncBlocker stuck = makeBlocker(BlockerReason::notUploaded, "/stuck");
  stuck.fileSize = 950;
  UploadRecord uploads;
  const Time now = clock_.now();
  uploads.files = {{"/fresh", 1'200'000, now - std::chrono::minutes(12), 1},
                   {"/stuck", 950, now - std::chrono::hours(3), 1}};
  setPublished(dashboard_->publishedUploadRecord(), Shared(uploads));
  publish({fresh, stuck});
  EXPECT_EQ(sheet_->rows()->row(0).amount, "1.2 MB · waiting 12 min");
  EXPECT_FALSE(sheet_->rows()->row(0).isStuck);
  EXPECT_EQ(sheet_->rows()->row(1).amount, "950 bytes · waiting 3 h");
  EXPECT_TRUE(sheet_->rows()->row(1).isStuck);

  clock_.set(now + std::chrono::minutes(1));
  sheet_->tellWaits();
  EXPECT_EQ(sheet_->rows()->row(0).amount, "1.2 MB · waiting 13 min");
}

TEST_F(AllBlockersViewModelTest, uploadsThatAreKnownLater_areTold) {
  publish(makeBlockers(BlockerReason::notUploaded, 1));
  UploadRecord uploads;
  uploads.files = {{"/notUploaded0", 1, clock_.now() - std::chrono::seconds(5), 1}};
  setPublished(dashboard_->publishedUploadRecord(), Shared(uploads));
  catchUp();
  runBackground();
  EXPECT_EQ(sheet_->rows()->row(0).amount, "waiting 5 s");
}

TEST_F(AllBlockersViewModelTest, search_narrowsAndCounts) {
  publish(makeBlockers(BlockerReason::notUploaded, 12));
  sheet_->setSearch("UPLOADED1");
  runBackground();
  EXPECT_THAT(paths(), ElementsAre("/notUploaded1", "/notUploaded10", "/notUploaded11"));
  EXPECT_EQ(sheet_->countText(), "3 of 12");
  EXPECT_TRUE(sheet_->isNarrowed());
}

TEST_F(AllBlockersViewModelTest, search_withoutAMatch_saysSo_andClearShowsAllAgain) {
  publish(makeBlockers(BlockerReason::notUploaded, 2));
  sheet_->setOrder("path");
  sheet_->setSearch("nowhere");
  sheet_->setReason("notUploaded");
  runBackground();
  EXPECT_TRUE(sheet_->isEmpty());
  EXPECT_EQ(sheet_->emptyTitle(), "No blockers match");
  EXPECT_EQ(sheet_->countText(), "0 of 2");
  sheet_->clear();
  runBackground();
  EXPECT_EQ(sheet_->countText(), "2 blockers");
  EXPECT_EQ(sheet_->search(), "");
  EXPECT_EQ(sheet_->reason(), "");
  EXPECT_EQ(sheet_->order(), "path");
}

TEST_F(AllBlockersViewModelTest, reasons_areThoseThatOccur) {
  publish(makeBlockers({BlockerReason::unresolvedConflict, BlockerReason::notUploaded}));
  EXPECT_THAT(titles(*sheet_->reasons()), ElementsAre("All Reasons", "Conflict Detected", "Not Uploaded"));
  EXPECT_EQ(sheet_->reasonTitle(), "All Reasons");
  sheet_->setReason("notUploaded");
  runBackground();
  EXPECT_THAT(paths(), ElementsAre("/notUploaded"));
  EXPECT_EQ(sheet_->reasonTitle(), "Not Uploaded");
  EXPECT_EQ(sheet_->reasonRow(), 2);
}

TEST_F(AllBlockersViewModelTest, chosenReason_staysAChoiceWhenItOccursNoMore) {
  publish(makeBlockers({BlockerReason::unresolvedConflict, BlockerReason::notUploaded}));
  sheet_->setReason("notUploaded");
  publish(makeBlockers({BlockerReason::unresolvedConflict}));
  EXPECT_TRUE(sheet_->isEmpty());
  EXPECT_EQ(sheet_->reasonTitle(), "Not Uploaded");
  sheet_->setReason("");
  runBackground();
  EXPECT_THAT(titles(*sheet_->reasons()), ElementsAre("All Reasons", "Conflict Detected"));
}

TEST_F(AllBlockersViewModelTest, folders_areThoseWithBlockers_andTellLikeNamesByPath) {
  watch("Work", "/home/one/Work");
  watch("Work", "/home/two/Work");
  watch("Quiet", "/home/Quiet");
  watch("Music", "/home/Music");
  publish({makeBlocker(BlockerReason::notUploaded, "/home/one/Work/a"),
           makeBlocker(BlockerReason::notUploaded, "/home/two/Work/b"),
           makeBlocker(BlockerReason::notUploaded, "/home/Music/c")});
  EXPECT_THAT(titles(*sheet_->folders()), ElementsAre("All Folders", "/home/one/Work", "/home/two/Work", "Music"));
  sheet_->setFolder(idText(folders_[1]));
  runBackground();
  EXPECT_THAT(paths(), ElementsAre("/home/two/Work/b"));
  EXPECT_EQ(sheet_->folderTitle(), "/home/two/Work");
}

TEST_F(AllBlockersViewModelTest, openedForAFolder_showsItsOwn_evenWhenThereAreNone) {
  watch("Quiet", "/home/Quiet");
  sheet_ = openSheet(idText(folders_[0]));
  publish(makeBlockers(BlockerReason::notUploaded, 3));
  EXPECT_TRUE(sheet_->isEmpty());
  EXPECT_EQ(sheet_->countText(), "0 of 3");
  EXPECT_EQ(sheet_->folderTitle(), "Quiet");
}

TEST_F(AllBlockersViewModelTest, openedForAFolderThatIsWatchedNoMore_showsAll) {
  sheet_ = openSheet("00000000-0000-0000-0000-000000000000");
  publish(makeBlockers(BlockerReason::notUploaded, 3));
  EXPECT_EQ(sheet_->countText(), "3 blockers");
  EXPECT_EQ(sheet_->folder(), "");
}

TEST_F(AllBlockersViewModelTest, orders_sortAndUnknownOnesDoNot) {
  SyncBlocker large = makeBlocker(BlockerReason::notUploaded, "/b");
  large.fileSize = 2;
  publish({makeBlocker(BlockerReason::notUploaded, "/c"), large, makeBlocker(BlockerReason::notUploaded, "/a")});
  EXPECT_THAT(titles(*sheet_->orders()),
              ElementsAre("Most Serious First", "By Name", "By Path", "Largest First", "Waiting Longest First"));
  sheet_->setOrder("path");
  runBackground();
  EXPECT_THAT(paths(), ElementsAre("/a", "/b", "/c"));
  sheet_->setOrder("size");
  runBackground();
  EXPECT_THAT(paths(), ElementsAre("/b", "/c", "/a"));
  sheet_->setOrder("none");
  EXPECT_EQ(sheet_->order(), "size");
  EXPECT_EQ(sheet_->orderTitle(), "Largest First");
}

TEST_F(AllBlockersViewModelTest, unfinishedWork_leavesWhatWasShown) {
  publish(makeBlockers(BlockerReason::notUploaded, 3));
  sheet_->setSearch("1");
  EXPECT_EQ(sheet_->rows()->count(), 3);
  EXPECT_EQ(sheet_->countText(), "3 blockers");
}

TEST_F(AllBlockersViewModelTest, typingOn_givesTheEarlierSearchUp) {
  publish(makeBlockers(BlockerReason::notUploaded, 12));
  const QSignalSpy starts(sheet_.get(), &AllBlockersViewModel::startedOver);
  sheet_->setSearch("1");
  sheet_->setSearch("11");
  runBackground();
  EXPECT_THAT(paths(), ElementsAre("/notUploaded11"));
  EXPECT_EQ(starts.count(), 1);
}

TEST_F(AllBlockersViewModelTest, newReport_changesOnlyWhatIsNew) {
  std::vector<SyncBlocker> blockers = makeBlockers(BlockerReason::notUploaded, 100);
  publish(blockers);
  const RowSignals rows(*sheet_->rows());
  blockers.erase(blockers.begin() + 50);
  blockers.insert(blockers.begin(), makeBlocker(BlockerReason::uploadError, "/new"));
  publish(blockers);
  EXPECT_EQ(rows.insertions(), 1);
  // The removal, and that texts may be others.
  EXPECT_EQ(rows.total(), 3);
  EXPECT_EQ(sheet_->rows()->count(), 100);
  EXPECT_EQ(sheet_->rows()->row(0).path, "/new");
  EXPECT_EQ(sheet_->rows()->row(50).path, "/notUploaded49");
  EXPECT_EQ(sheet_->rows()->row(51).path, "/notUploaded51");
}

TEST_F(AllBlockersViewModelTest, newReport_reachesANarrowedAndSortedList) {
  publish(makeBlockers(BlockerReason::notUploaded, 3));
  sheet_->setSearch("uploaded");
  sheet_->setOrder("path");
  runBackground();
  const QSignalSpy starts(sheet_.get(), &AllBlockersViewModel::startedOver);
  publish({makeBlocker(BlockerReason::notUploaded, "/notUploaded9"), makeBlocker(BlockerReason::notUploaded, "/other"),
           makeBlocker(BlockerReason::notUploaded, "/notUploaded1")});
  EXPECT_THAT(paths(), ElementsAre("/notUploaded1", "/notUploaded9"));
  EXPECT_EQ(sheet_->countText(), "2 of 3");
  EXPECT_THAT(starts, IsEmpty());
}

TEST_F(AllBlockersViewModelTest, reportWithManyChanges_startsOverAtTheSamePlace) {
  std::vector<SyncBlocker> blockers = makeBlockers(BlockerReason::notUploaded, 1000);
  publish(blockers);
  const QSignalSpy starts(sheet_.get(), &AllBlockersViewModel::startedOver);
  const QSignalSpy warnings(sheet_.get(), &AllBlockersViewModel::aboutToStartOver);
  std::size_t number = 0;
  std::erase_if(blockers, [&](const SyncBlocker&) { return number++ % 2 == 0; });
  publish(blockers);
  EXPECT_EQ(sheet_->rows()->count(), 500);
  ASSERT_EQ(starts.count(), 1);
  EXPECT_TRUE(starts.at(0).at(0).toBool());
  EXPECT_EQ(warnings.count(), 1);
}

TEST_F(AllBlockersViewModelTest, reportsDuringTheWork_areShownOneAfterTheOther) {
  announce(makeBlockers(BlockerReason::notUploaded, 1));
  announce(makeBlockers(BlockerReason::notUploaded, 2));
  announce(makeBlockers(BlockerReason::notUploaded, 3));
  EXPECT_THAT(background_, SizeIs(1));
  runBackground();
  EXPECT_EQ(sheet_->rows()->count(), 3);
}

TEST_F(AllBlockersViewModelTest, sameReportAndVerdict_causeNoWork) {
  publish(makeBlockers(BlockerReason::notUploaded, 1));
  publishStanding(VerdictStanding::expired);
  catchUp();
  EXPECT_THAT(background_, IsEmpty());
}

TEST_F(AllBlockersViewModelTest, row_isFoundByItsKeyInTheNextReport) {
  std::vector<SyncBlocker> blockers = makeBlockers(BlockerReason::notUploaded, 3);
  publish(blockers);
  const QString key = sheet_->rows()->row(2).key;
  blockers.erase(blockers.begin());
  publish(blockers);
  EXPECT_EQ(sheet_->rows()->indexOf(key), 1);
  blockers.pop_back();
  publish(blockers);
  EXPECT_EQ(sheet_->rows()->indexOf(key), -1);
  EXPECT_EQ(sheet_->rows()->indexOf("no key"), -1);
}

TEST_F(AllBlockersViewModelTest, reveal_showsTheRowsFileAsItIsOnTheDisk) {
  files_.addExisting("/Users/test/a\x1b[2J.txt");
  publish({makeBlocker(BlockerReason::notUploaded, "/Users/test/a\x1b[2J.txt")});
  sheet_->reveal(0);
  sheet_->reveal(1);
  sheet_->reveal(-1);
  EXPECT_THAT(workspace_.revealed(), ElementsAre("/Users/test/a\x1b[2J.txt"));
}

TEST_F(AllBlockersViewModelTest, copy_takesThePathAsItIsShown_andSaysSo) {
  publish({makeBlocker(BlockerReason::notUploaded, "/Users/test/a\x1b[2J.txt")});
  sheet_->copyPath(5);
  EXPECT_EQ(sheet_->note(), "");
  sheet_->copyPath(0);
  EXPECT_EQ(clipboard_.text, "/Users/test/a\\x1b[2J.txt");
  EXPECT_EQ(sheet_->note(), "Copied the path of a\\x1b[2J.txt");
  sheet_->setSearch("a");
  EXPECT_EQ(sheet_->note(), "");
}

TEST_F(AllBlockersViewModelTest, closedDuringTheWork_nothingComesOfIt) {
  announce(makeBlockers(BlockerReason::notUploaded, 3));
  checks_.reset();
  sheet_.reset();
  runBackground();
  EXPECT_THAT(background_, IsEmpty());
}

}  // namespace
}  // namespace cirrovane::test
