#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/ChoiceRow.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/Tone.h"
#include "ui/viewmodels/ToolsViewModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {

/// Something that rows are made from.
struct Letter {
  char name = ' ';
  bool isLarge = false;

  friend bool operator==(const Letter&, const Letter&) = default;
  friend QString keyOf(const Letter& letter) { return QString(QLatin1Char(letter.name)); }
};

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<Letter> letters(const std::string& text) {
  std::vector<Letter> made;
  for (const char letter : text) {
    made.push_back({letter});
  }
  return made;
}

class ListModelTest : public testing::Test {
 protected:
  std::string content() const {
    std::string text;
    for (int row = 0; row < list_.rowCount(); ++row) {
      text += valueAt(row).toStdString();
    }
    return text;
  }
  QString valueAt(int row) const { return list_.data(list_.index(row), list_.roleNames().key("title")).toString(); }

  int madeRows_ = 0;
  ListModel<ChoiceRow, Letter> list_{[this](const Letter& letter) {
    ++madeRows_;
    const QString text(QLatin1Char(letter.name));
    return ChoiceRow{.value = text, .title = letter.isLarge ? text.toUpper() : text};
  }};
  QAbstractItemModelTester checks_{&list_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ListModelTest, roles_haveTheNamesOfTheRowsFields) {
  EXPECT_THAT(list_.roleNames().values(), UnorderedElementsAre("value", "title"));
}

TEST_F(ListModelTest, fields_ofAnyType_areHandedOutAsTheyAre) {
  ListModel<ToolRow> tools;
  tools.setRows({{.name = "jq",
                  .state = "Installed",
                  .tone = Tone::Good,
                  .purpose = "",
                  .unlocks = "",
                  .installCommand = "",
                  .status = "",
                  .isInstalled = true}});
  const auto value = [&](const char* role) { return tools.data(tools.index(0), tools.roleNames().key(role)); };
  EXPECT_EQ(value("name").toString(), "jq");
  EXPECT_EQ(value("tone").value<Tone>(), Tone::Good);
  EXPECT_EQ(value("isInstalled"), QVariant(true));
  EXPECT_EQ(tools.row(0).name, "jq");
}

TEST_F(ListModelTest, rolesThatAreNone_haveNoValue) {
  list_.setRows(letters("a"));
  EXPECT_FALSE(list_.data(list_.index(0), Qt::DisplayRole).isValid());
  EXPECT_FALSE(list_.data(list_.index(0), Qt::UserRole + 3).isValid());
}

TEST_F(ListModelTest, rowsOfAnotherSource_areMadeOnlyWhenTheyAreAskedFor) {
  checks_.disconnect();
  ListModel<ChoiceRow, Letter> list([this](const Letter&) {
    ++madeRows_;
    return ChoiceRow();
  });
  list.setRows(std::vector<Letter>(500'000, Letter{'a'}));
  EXPECT_EQ(list.count(), 500'000);
  EXPECT_EQ(madeRows_, 0);
  for (const int role : list.roleNames().keys()) {
    list.data(list.index(499'999), role);
  }
  EXPECT_EQ(madeRows_, 1);
}

TEST_F(ListModelTest, rowThatWasMade_isMadeAnewAfterAChange) {
  list_.setRows(letters("ab"));
  EXPECT_EQ(valueAt(0), "a");
  list_.setRows(letters("ba"));
  EXPECT_EQ(valueAt(0), "b");
  list_.setRows({{'b', true}, {'a'}});
  EXPECT_EQ(valueAt(0), "B");
  list_.setRows(letters("a"));
  EXPECT_EQ(valueAt(0), "a");
  list_.setRows(letters("ca"));
  EXPECT_EQ(valueAt(0), "c");
  list_.startOver(letters("d"));
  EXPECT_EQ(valueAt(0), "d");
}

TEST_F(ListModelTest, equalRows_changeNothing) {
  list_.setRows(letters("abc"));
  const RowSignals told(list_);
  list_.setRows(letters("abc"));
  EXPECT_EQ(told.total(), 0);
}

TEST_F(ListModelTest, oneOtherValue_changesThatRowAlone) {
  list_.setRows(letters("abc"));
  const RowSignals told(list_);
  list_.setRows({{'a'}, {'b', true}, {'c'}});
  ASSERT_EQ(told.changes(), 1);
  EXPECT_EQ(told.changedRow(), 1);
  EXPECT_EQ(told.total(), 1);
  EXPECT_EQ(content(), "aBc");
}

TEST_F(ListModelTest, newRowInFront_leavesTheOthers) {
  list_.setRows(letters("bc"));
  const RowSignals told(list_);
  list_.setRows(letters("abc"));
  EXPECT_EQ(told.insertions(), 1);
  EXPECT_EQ(told.total(), 1);
  EXPECT_EQ(content(), "abc");
}

TEST_F(ListModelTest, equalKeys_areRowsOfTheirOwn) {
  list_.setRows(letters("aab"));
  EXPECT_EQ(content(), "aab");
  list_.setRows(letters("aba"));
  EXPECT_EQ(content(), "aba");
}

TEST_F(ListModelTest, startOver_isOneReset) {
  list_.setRows(letters("abc"));
  const RowSignals told(list_);
  const QSignalSpy counted(&list_, &ListModelBase::countChanged);
  list_.startOver(letters("cd"));
  EXPECT_EQ(told.total(), 1);
  EXPECT_EQ(counted.count(), 1);
  EXPECT_EQ(content(), "cd");
}

TEST_F(ListModelTest, indexOf_findsARowByItsKey) {
  list_.setRows(letters("abc"));
  EXPECT_EQ(list_.indexOf("c"), 2);
  EXPECT_EQ(list_.indexOf("C"), -1);
  EXPECT_EQ(list_.find(2)->name, 'c');
  EXPECT_EQ(list_.find(3), nullptr);
  EXPECT_EQ(list_.find(-1), nullptr);
}

TEST_F(ListModelTest, anyListAfterAnyOther_isShownAsItIs) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    std::string text = "abcdefghij";
    std::ranges::shuffle(text, random);
    text.resize(random() % (text.size() + 1));
    list_.setRows(letters(text));
    ASSERT_EQ(content(), text);
  }
}

}  // namespace
}  // namespace cirrovane::test
