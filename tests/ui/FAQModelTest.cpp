#include "tests/ui/RowSignals.h"
#include "ui/viewmodels/FAQModel.h"

#include <QAbstractItemModelTester>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FAQModelTest : public testing::Test {
 protected:
  std::vector<int> openRows() {
    std::vector<int> rows;
    for (int row = 0; row < faq_.questions()->count(); ++row) {
      if (faq_.questions()->row(row).expanded) {
        rows.push_back(row);
      }
    }
    return rows;
  }

  FAQModel faq_;
  QAbstractItemModelTester checks_{faq_.questions(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(FAQModelTest, allQuestions_startClosed) {
  EXPECT_EQ(faq_.questions()->count(), 7);
  EXPECT_THAT(openRows(), IsEmpty());
}

TEST_F(FAQModelTest, severalQuestions_canBeOpenAtOnce) {
  faq_.toggle(2);
  faq_.toggle(4);
  EXPECT_THAT(openRows(), ElementsAre(2, 4));
  faq_.toggle(2);
  EXPECT_THAT(openRows(), ElementsAre(4));
}

TEST_F(FAQModelTest, toggle_changesItsQuestionAlone) {
  const RowSignals told(*faq_.questions());
  faq_.toggle(2);
  EXPECT_EQ(told.total(), 1);
  EXPECT_EQ(told.changedRow(), 2);
}

TEST_F(FAQModelTest, toggle_ofNoQuestion_doesNothing) {
  faq_.toggle(-1);
  faq_.toggle(7);
  EXPECT_THAT(openRows(), IsEmpty());
}

}  // namespace
}  // namespace cirrovane::test
