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
  std::vector<int> openRows() const {
    std::vector<int> rows;
    for (int row = 0; row < model_.rowCount(); ++row) {
      if (model_.data(model_.index(row), FAQModel::ExpandedRole).toBool()) {
        rows.push_back(row);
      }
    }
    return rows;
  }

  FAQModel model_;
  QAbstractItemModelTester checks_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(FAQModelTest, allQuestions_startClosed) {
  EXPECT_EQ(model_.rowCount(), 7);
  EXPECT_THAT(openRows(), IsEmpty());
}

TEST_F(FAQModelTest, severalQuestions_canBeOpenAtOnce) {
  model_.toggle(2);
  model_.toggle(4);
  EXPECT_THAT(openRows(), ElementsAre(2, 4));
  model_.toggle(2);
  EXPECT_THAT(openRows(), ElementsAre(4));
}

TEST_F(FAQModelTest, toggle_ofNoQuestion_doesNothing) {
  model_.toggle(-1);
  model_.toggle(7);
  EXPECT_THAT(openRows(), IsEmpty());
}

}  // namespace
}  // namespace cirrovane::test
