#include "tests/ui/Rows.h"
#include "ui/viewmodels/MenuCommands.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QStringList>
#include <algorithm>
#include <stdexcept>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class MenuCommandsTest : public testing::Test {
 protected:
  const MenuCommands::Menu& menu(const QString& title) const {
    return *std::ranges::find(commands_.menus(), title, &MenuCommands::Menu::title);
  }
  static QStringList texts(const MenuCommands::Menu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions) {
      texts.append(action != nullptr ? action->text() : QStringLiteral("-"));
    }
    return texts;
  }
  QAction& action(const QString& text) const {
    for (const MenuCommands::Menu& menu : commands_.menus()) {
      for (QAction* action : menu.actions) {
        if (action != nullptr && action->text() == text) {
          return *action;
        }
      }
    }
    throw std::runtime_error("no such command");
  }

  // Actions with shortcuts need an application object, and a screen that is not there.
  [[maybe_unused]] const bool isOffscreen_ = qputenv("QT_QPA_PLATFORM", "offscreen");
  int argumentCount_ = 1;
  char name_[6] = "tests";
  char* arguments_[1] = {name_};
  QGuiApplication application_{argumentCount_, arguments_};
  MenuCommands commands_;
};

TEST_F(MenuCommandsTest, menus_areInTheUsualOrder) {
  QStringList titles;
  for (const MenuCommands::Menu& menu : commands_.menus()) {
    titles.append(menu.title);
  }
  EXPECT_EQ(titles, QStringList({"Cirrovane", "Edit", "View", "Window", "Help"}));
  EXPECT_EQ(texts(menu("Edit")), QStringList({"Copy", "Select All"}));
  EXPECT_EQ(texts(menu("Window")), QStringList({"Minimize", "Close Window", "-", "Show Cirrovane"}));
}

TEST_F(MenuCommandsTest, windowsMenus_areTheSame) {
  ASSERT_EQ(commands_.menuList()->count(), commands_.menus().size());
  for (int index = 0; index < commands_.menus().size(); ++index) {
    const MenuRow shown = commands_.menuList()->row(index);
    EXPECT_EQ(shown.title, commands_.menus()[index].title);
    const auto* commands = dynamic_cast<const ListModel<CommandRow>*>(shown.commands);
    ASSERT_NE(commands, nullptr);
    const std::vector<QAction*> actions = fieldsOf(*commands, &CommandRow::action);
    EXPECT_EQ(QList<QAction*>(actions.begin(), actions.end()), commands_.menus()[index].actions);
  }
}

TEST_F(MenuCommandsTest, applicationsMenu_isLeftEmptyByAMac) {
  for (const QAction* action : menu("Cirrovane").actions) {
    if (action != nullptr) {
      EXPECT_NE(action->menuRole(), QAction::NoRole) << action->text().toStdString();
      EXPECT_NE(action->menuRole(), QAction::TextHeuristicRole) << action->text().toStdString();
    }
  }
}

TEST_F(MenuCommandsTest, commandsWithAPlaceOfTheirOwn_haveItsRole) {
  EXPECT_EQ(action("About Cirrovane").menuRole(), QAction::AboutRole);
  EXPECT_EQ(action("Check for Updates...").menuRole(), QAction::ApplicationSpecificRole);
  EXPECT_EQ(action("Settings...").menuRole(), QAction::PreferencesRole);
  EXPECT_EQ(action("Quit Cirrovane").menuRole(), QAction::QuitRole);
}

TEST_F(MenuCommandsTest, otherMenus_keepTheirCommands) {
  for (const MenuCommands::Menu& menu : commands_.menus()) {
    for (const QAction* action : menu.actions) {
      if (menu.title != "Cirrovane" && action != nullptr) {
        // By these words a Mac finds Copy and Select All, and moves neither.
        const bool isEdit = menu.title == "Edit";
        EXPECT_EQ(action->menuRole(), isEdit ? QAction::TextHeuristicRole : QAction::NoRole);
      }
    }
  }
}

TEST_F(MenuCommandsTest, shortcuts_areEachForOneCommand) {
  QStringList shortcuts;
  for (const MenuCommands::Menu& menu : commands_.menus()) {
    for (const QAction* action : menu.actions) {
      if (action != nullptr && !action->shortcut().isEmpty()) {
        shortcuts.append(action->shortcut().toString());
      }
    }
  }
  EXPECT_EQ(shortcuts.removeDuplicates(), 0) << shortcuts.join(' ').toStdString();
}

TEST_F(MenuCommandsTest, command_isToldWithItsName) {
  MenuCommands::Command heard{};
  QString name;
  QObject::connect(&commands_, &MenuCommands::triggered, &commands_,
                   [&](MenuCommands::Command command, const QString& text) {
                     heard = command;
                     name = text;
                   });
  action("Close Window").trigger();
  EXPECT_EQ(heard, MenuCommands::Command::closeWindow);
  EXPECT_EQ(name, "closeWindow");
}

TEST_F(MenuCommandsTest, commandThatCannotBeGiven_isNotTold) {
  const QSignalSpy told(&commands_, &MenuCommands::triggered);
  commands_.setEnabled("copy", false);
  action("Copy").trigger();
  EXPECT_EQ(told.size(), 0);
  commands_.setEnabled("copy", true);
  action("Copy").trigger();
  EXPECT_EQ(told.size(), 1);
}

TEST_F(MenuCommandsTest, commandByItsName_isGivenAndTellsItsKeys) {
  const QSignalSpy told(&commands_, &MenuCommands::triggered);
  commands_.trigger("settings");
  ASSERT_EQ(told.size(), 1);
  EXPECT_EQ(told.front().at(1).toString(), "settings");
  EXPECT_EQ(commands_.keys("settings"), "Ctrl+,");
  EXPECT_EQ(commands_.keys("about"), "");
  commands_.trigger("no such command");
  EXPECT_EQ(commands_.keys("no such command"), "");
  EXPECT_EQ(told.size(), 1);
}

}  // namespace
}  // namespace cirrovane::test
