#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/BlockersViewModel.h"

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

class BlockersViewModelTest : public PageTest {
 protected:
  void publish(std::vector<SyncBlocker> blockers) {
    SyncHealthReport report;
    report.blockers = std::move(blockers);
    publishReport(std::move(report));
    catchUp();
  }

  static BlockerRow row(const QString& reason, const std::string& path) {
    return {.reason = reason,
            .folderName = "Work",
            .path = QString::fromStdString(path),
            .details = "Details.",
            .filePath = path};
  }

  std::unique_ptr<BlockersViewModel> page_ = open<BlockersViewModel>();
};

TEST_F(BlockersViewModelTest, beforeTheFirstScan_saysThatNobodyHasLooked) {
  EXPECT_TRUE(page_->isEmpty());
  EXPECT_EQ(page_->emptyTitle(), "Not scanned yet");
  publish({});
  EXPECT_EQ(page_->emptyTitle(), "No blockers detected");
  EXPECT_EQ(page_->emptySubtitle(), "Your watched folders currently show no obvious sync blockers.");
}

TEST_F(BlockersViewModelTest, noBlockers_isEmptyAndCountsZero) {
  EXPECT_TRUE(page_->isEmpty());
  EXPECT_EQ(page_->countText(), "0 total");
  EXPECT_EQ(page_->rows()->count(), 0);
}

TEST_F(BlockersViewModelTest, fiveBlockers_areAllShownInTheReportsOrder) {
  publish(makeBlockers({BlockerReason::unavailableFolder, BlockerReason::unresolvedConflict, BlockerReason::uploadError,
                        BlockerReason::stalledUpload, BlockerReason::notDownloaded}));
  EXPECT_FALSE(page_->isEmpty());
  EXPECT_EQ(page_->countText(), "5 total");
  EXPECT_THAT(rowsOf(*page_->rows()),
              ElementsAre(row("Folder Unavailable", "/unavailableFolder"),
                          row("Conflict Detected", "/unresolvedConflict"), row("Upload Error", "/uploadError"),
                          row("Upload Stalled", "/stalledUpload"), row("Cloud-Only (Not Local)", "/notDownloaded")));
}

TEST_F(BlockersViewModelTest, remainingReasons_haveTheirTitles) {
  publish(makeBlockers({BlockerReason::outsideICloud, BlockerReason::downloadError, BlockerReason::notUploaded}));
  EXPECT_THAT(rowsOf(*page_->rows()),
              ElementsAre(row("Outside iCloud", "/outsideICloud"), row("Download Error", "/downloadError"),
                          row("Not Uploaded", "/notUploaded")));
}

TEST_F(BlockersViewModelTest, eightBlockers_areCountedAndTheFirstFiveShown) {
  publish(makeBlockers(BlockerReason::notUploaded, 8));
  EXPECT_EQ(page_->countText(), "8 total");
  ASSERT_EQ(page_->rows()->count(), 5);
  EXPECT_EQ(page_->rows()->row(0), row("Not Uploaded", "/notUploaded0"));
  EXPECT_EQ(page_->rows()->row(4), row("Not Uploaded", "/notUploaded4"));
}

TEST_F(BlockersViewModelTest, halfAMillionBlockers_areCountedAndTheFirstFiveShown) {
  publish(makeBlockers(BlockerReason::notUploaded, 500'000));
  EXPECT_EQ(page_->countText(), "500000 total");
  EXPECT_EQ(page_->rows()->count(), 5);
}

TEST_F(BlockersViewModelTest, reveal_showsTheRowsFileAsItIsOnTheDisk) {
  files_.addExisting("/Users/test/a\x1b[2J.txt");
  publish({makeBlocker(BlockerReason::notUploaded, "/Users/test/first.txt"),
           makeBlocker(BlockerReason::notUploaded, "/Users/test/a\x1b[2J.txt")});
  EXPECT_EQ(page_->rows()->row(1).path, "/Users/test/a\\x1b[2J.txt");
  page_->reveal(1);
  EXPECT_THAT(workspace_.revealed(), ElementsAre("/Users/test/a\x1b[2J.txt"));
}

TEST_F(BlockersViewModelTest, reveal_ofARowThatIsGone_showsNothing) {
  page_->reveal(0);
  page_->reveal(-1);
  EXPECT_THAT(workspace_.revealed(), IsEmpty());
}

TEST_F(BlockersViewModelTest, hostileNames_areEscapedAndLongOnesWhole) {
  SyncBlocker blocker = makeBlocker(BlockerReason::notUploaded, "/Users/test/<b>" + std::string(255, 'x'));
  blocker.folderName = "Tax\u202efdp";
  blocker.details = "Line\nbreak";
  publish({blocker});
  const BlockerRow shown = page_->rows()->row(0);
  EXPECT_EQ(shown.folderName, "Tax\\u{202e}fdp");
  EXPECT_EQ(shown.path.toStdString(), "/Users/test/<b>" + std::string(255, 'x'));
  EXPECT_EQ(shown.details, "Line\\nbreak");
}

TEST_F(BlockersViewModelTest, sameBlockersAgain_changeNoRow) {
  publish(makeBlockers(BlockerReason::notUploaded, 8));
  const RowSignals rows(*page_->rows());
  publish(makeBlockers(BlockerReason::notUploaded, 8));
  EXPECT_EQ(rows.total(), 0);
}

TEST_F(BlockersViewModelTest, newFirstBlocker_leavesTheOthersRowsAlone) {
  const std::vector<SyncBlocker> before = makeBlockers(BlockerReason::notUploaded, 3);
  publish(before);
  const RowSignals rows(*page_->rows());
  std::vector<SyncBlocker> after = {makeBlocker(BlockerReason::uploadError, "/new")};
  after.insert(after.end(), before.begin(), before.end());
  publish(after);
  EXPECT_EQ(rows.insertions(), 1);
  EXPECT_EQ(rows.total(), 1);
}

}  // namespace
}  // namespace cirrovane::test
