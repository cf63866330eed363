#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/ActionsViewModel.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class ActionsViewModelTest : public PageTest {
 protected:
  void publish() {
    SyncHealthReport report;
    report.summary = "Summary.";
    report.actions = {{idOf(1), 1, "Resolve file conflicts first", "Decide."},
                      {idOf(2), 2, "Stabilize network and re-check", "Confirm."}};
    publishReport(report);
    catchUp();
  }

  std::unique_ptr<ActionsViewModel> page_ = open<ActionsViewModel>();
};

TEST_F(ActionsViewModelTest, beforeTheFirstScan_listsNothing) {
  EXPECT_EQ(page_->rows()->count(), 0);
}

TEST_F(ActionsViewModelTest, actions_areNumberedInTheReportsOrder) {
  publish();
  EXPECT_THAT(rowsOf(*page_->rows()),
              ElementsAre(ActionRow{.rank = "1.", .title = "Resolve file conflicts first", .detail = "Decide."},
                          ActionRow{.rank = "2.", .title = "Stabilize network and re-check", .detail = "Confirm."}));
}

TEST_F(ActionsViewModelTest, sameActionsAgain_changeNoRow) {
  publish();
  const RowSignals rows(*page_->rows());
  publish();
  EXPECT_EQ(rows.total(), 0);
}

}  // namespace
}  // namespace cirrovane::test
