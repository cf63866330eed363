#include "tests/ui/PageFixture.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/UploadsViewModel.h"

#include <QSignalSpy>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class UploadsViewModelTest : public PageTest {
 protected:
  void publish(const UploadStanding& standing) {
    setPublished(dashboard_->publishedUploads(), standing);
    catchUp();
  }
  void publishFindings(const std::vector<DiagnosticFinding>& findings) {
    setPublished(dashboard_->publishedDiagnostics(), findings);
    catchUp();
  }
  UploadStanding pending() const {
    UploadStanding standing;
    standing.totals.generatedAt = clock_.now();
    standing.totals.pendingFiles = 12;
    standing.totals.pendingBytes = 1'200'000'000;
    standing.quietSince = clock_.now();
    return standing;
  }
  UploadStanding moving() const {
    UploadStanding standing = pending();
    standing.lastLeft = clock_.now();
    standing.totals.estimate = {clock_.now() + 6min, clock_.now() + 9min};
    standing.share = 0.347;
    return standing;
  }
  UploadStanding stuck(std::int64_t count) const {
    UploadStanding standing = pending();
    standing.totals.stuckFiles = count;
    standing.stuck = {{"/x/Invoice\n2031.pdf", 9'508, clock_.now() - 3h - 5min, "No space.\nAt all."},
                      {"/x/b.txt", 950'000, clock_.now() - 25min, ""}};
    return standing;
  }

  std::unique_ptr<UploadsViewModel> page_ = open<UploadsViewModel>();
};

TEST_F(UploadsViewModelTest, nothingLeft_saysNothing) {
  publish(UploadStanding());
  EXPECT_EQ(page_->amount(), "");
  EXPECT_EQ(page_->timeLeft(), "");
  EXPECT_FALSE(page_->isMoving());
  EXPECT_EQ(page_->stuckText(), "");
  EXPECT_THAT(rowsOf(*page_->stuck()), IsEmpty());
}

TEST_F(UploadsViewModelTest, moving_tellsAmountRangeAndShare) {
  publish(moving());
  EXPECT_EQ(page_->amount(), "Left to upload: 12 files, 1.2 GB");
  EXPECT_EQ(page_->timeLeft(), "about 6 to 9 min");
  EXPECT_TRUE(page_->isMoving());
  EXPECT_EQ(page_->share(), 0.347);
  EXPECT_EQ(page_->shareText(), "34%");
}

TEST_F(UploadsViewModelTest, allButAByte_isNotAllOfIt) {
  UploadStanding standing = moving();
  standing.share = 0.9999;
  publish(standing);
  EXPECT_EQ(page_->shareText(), "99%");
}

TEST_F(UploadsViewModelTest, toldAnew_goesByTheTimeThatItIs) {
  publish(moving());
  clock_.advance(12min);
  publish(dashboard_->uploads());
  EXPECT_EQ(page_->timeLeft(), "nothing has moved for 12 min");
  EXPECT_FALSE(page_->isMoving());
}

TEST_F(UploadsViewModelTest, stuckFiles_areNamedWithTheirWaitErrorAndNextStep) {
  publish(stuck(2));
  EXPECT_EQ(page_->stuckText(), "2 files are stuck");
  const std::vector<StuckUploadRow> rows = rowsOf(*page_->stuck());
  ASSERT_THAT(rows, SizeIs(2));
  EXPECT_EQ(rows[0].path, "/x/Invoice\\n2031.pdf");
  EXPECT_EQ(rows[0].size, "10 KB");
  EXPECT_EQ(rows[0].waiting, "Waiting for 3 h 5 min");
  EXPECT_TRUE(rows[0].since.startsWith("Since "));
  EXPECT_EQ(rows[0].error, "No space.\\nAt all.");
  EXPECT_TRUE(rows[0].nextStep.startsWith("Copy the file"));
  EXPECT_EQ(rows[1].error, "");
  EXPECT_EQ(rows[1].size, "950 KB");
  EXPECT_TRUE(rows[1].nextStep.startsWith("Leave this Mac on"));
  EXPECT_EQ(page_->unlistedText(), "");
}

TEST_F(UploadsViewModelTest, moreStuckThanListed_areCounted) {
  publish(stuck(9));
  EXPECT_EQ(page_->unlistedText(), "7 more have waited less long.");
}

TEST_F(UploadsViewModelTest, findings_changeWhatHelps) {
  publish(stuck(2));
  DiagnosticFinding route;
  route.domain = DiagnosticDomain::network;
  route.severity = DiagnosticSeverity::warning;
  route.title = "Default route";
  route.detail = "Could not query default route.";
  publishFindings({route});
  EXPECT_THAT(rowsOf(*page_->hindrances()),
              ElementsAre(HindranceRow{"Default route", "Could not query default route."}));
  EXPECT_TRUE(page_->stuck()->row(1).nextStep.startsWith("Connect this Mac"));
}

TEST_F(UploadsViewModelTest, reveal_showsThatFile) {
  publish(stuck(2));
  files_.addExisting("/x/b.txt");
  page_->reveal(1);
  page_->reveal(7);
  EXPECT_THAT(workspace_.revealed(), ElementsAre("/x/b.txt"));
}

}  // namespace
}  // namespace cirrovane::test
