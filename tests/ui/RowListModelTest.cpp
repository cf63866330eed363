#include "ui/viewmodels/RowListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using ModelRow = RowListModel::Row;

class RowListModelTest : public testing::Test {
 protected:
  /// Rows whose keys are the letters and whose values are the letters with the suffix.
  static std::vector<ModelRow> rows(const std::string& letters, const QString& suffix = {}) {
    std::vector<ModelRow> made;
    for (const char letter : letters) {
      made.push_back({QString(QLatin1Char(letter)), {QString(QLatin1Char(letter)) + suffix}});
    }
    return made;
  }
  std::string content() const {
    std::string text;
    for (int row = 0; row < model_.rowCount(); ++row) {
      text += model_.data(model_.index(row), Qt::UserRole + 1).toString().toStdString();
    }
    return text;
  }

  RowListModel model_{{"title"}};
  QAbstractItemModelTester checks_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(RowListModelTest, equalRows_changeNothing) {
  model_.setRows(rows("abc"));
  const QSignalSpy inserted(&model_, &RowListModel::rowsInserted);
  const QSignalSpy removed(&model_, &RowListModel::rowsRemoved);
  const QSignalSpy moved(&model_, &RowListModel::rowsMoved);
  const QSignalSpy changed(&model_, &RowListModel::dataChanged);
  model_.setRows(rows("abc"));
  EXPECT_EQ(inserted.size() + removed.size() + moved.size() + changed.size(), 0);
}

TEST_F(RowListModelTest, oneOtherValue_changesThatRowAlone) {
  model_.setRows(rows("abc"));
  const QSignalSpy changed(&model_, &RowListModel::dataChanged);
  std::vector<ModelRow> next = rows("abc");
  next[1].values = {QStringLiteral("B")};
  model_.setRows(next);
  ASSERT_EQ(changed.size(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
  EXPECT_EQ(content(), "aBc");
}

TEST_F(RowListModelTest, newRowInFront_leavesTheOthers) {
  model_.setRows(rows("bc"));
  const QSignalSpy inserted(&model_, &RowListModel::rowsInserted);
  const QSignalSpy removed(&model_, &RowListModel::rowsRemoved);
  model_.setRows(rows("abc"));
  EXPECT_EQ(inserted.size(), 1);
  EXPECT_EQ(removed.size(), 0);
  EXPECT_EQ(content(), "abc");
}

TEST_F(RowListModelTest, equalKeys_areRowsOfTheirOwn) {
  model_.setRows(rows("aab"));
  EXPECT_EQ(content(), "aab");
  model_.setRows(rows("aba"));
  EXPECT_EQ(content(), "aba");
}

TEST_F(RowListModelTest, anyListAfterAnyOther_isShownAsItIs) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    std::string letters = "abcdefghij";
    std::ranges::shuffle(letters, random);
    letters.resize(random() % (letters.size() + 1));
    model_.setRows(rows(letters));
    ASSERT_EQ(content(), letters);
  }
}

}  // namespace
}  // namespace cirrovane::test
