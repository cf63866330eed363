#include "ui/viewmodels/MenuCommands.h"

#include <QMetaEnum>
#include <utility>
#include <vector>

namespace cirrovane {

// A Mac has an application menu of its own, and hides a menu without commands: so every command of the first menu has a
// role. Copy and Select All have TextHeuristicRole, so that they work in the system's panels too. All others name their
// role, since versions of the toolkit read the words in different ways.
MenuCommands::MenuCommands(QObject* parent) : QObject(parent) {
  constexpr auto noRole = QAction::NoRole;
  constexpr auto applicationsOwn = QAction::ApplicationSpecificRole;
  constexpr auto byItsWords = QAction::TextHeuristicRole;
  menus_ = {
      {QStringLiteral("Cirrovane"),
       {add(Command::about, QStringLiteral("About Cirrovane"), QAction::AboutRole),
        add(Command::settings, QStringLiteral("Settings..."), QAction::PreferencesRole, Qt::CTRL | Qt::Key_Comma),
        add(Command::checkForUpdates, QStringLiteral("Check for Updates..."), applicationsOwn, Qt::CTRL | Qt::Key_U),
        add(Command::releaseNotes, QStringLiteral("Open Release Notes"), applicationsOwn), nullptr,
        add(Command::quit, QStringLiteral("Quit Cirrovane"), QAction::QuitRole, QKeySequence::Quit)}},
      {QStringLiteral("Edit"),
       {add(Command::copy, QStringLiteral("Copy"), byItsWords, QKeySequence::Copy),
        add(Command::selectAll, QStringLiteral("Select All"), byItsWords, QKeySequence::SelectAll)}},
      {QStringLiteral("View"), {add(Command::rescan, QStringLiteral("Rescan"), noRole, Qt::CTRL | Qt::Key_R)}},
      {QStringLiteral("Window"),
       {add(Command::minimize, QStringLiteral("Minimize"), noRole, Qt::CTRL | Qt::Key_M),
        add(Command::closeWindow, QStringLiteral("Close Window"), noRole, QKeySequence::Close), nullptr,
        add(Command::showWindow, QStringLiteral("Show Cirrovane"), noRole, Qt::CTRL | Qt::Key_0)}},
      {QStringLiteral("Help"),
       {add(Command::terminologyGuide, QStringLiteral("Terminology Guide"), noRole),
        add(Command::faq, QStringLiteral("FAQ"), noRole)}},
  };
  fillMenuList();
}

QAction* MenuCommands::add(Command command, const QString& text, QAction::MenuRole role, const QKeySequence& shortcut) {
  auto* action = new QAction(text, this);
  action->setMenuRole(role);
  action->setShortcut(shortcut);
  const QString name = QString::fromLatin1(QMetaEnum::fromType<Command>().valueToKey(static_cast<int>(command)));
  connect(action, &QAction::triggered, this, [this, command, name] { emit triggered(command, name); });
  actions_.insert(name, action);
  return action;
}

void MenuCommands::fillMenuList() {
  std::vector<MenuRow> rows;
  for (const Menu& menu : menus_) {
    std::vector<CommandRow> commands;
    for (QAction* action : menu.actions) {
      commands.push_back({.action = action});
    }
    auto* list = new ListModel<CommandRow>(this);
    list->setRows(std::move(commands));
    rows.push_back({.title = menu.title, .commands = list});
  }
  menuList_.setRows(std::move(rows));
}

void MenuCommands::trigger(const QString& name) {
  if (QAction* action = actions_.value(name)) {
    action->trigger();
  }
}

QString MenuCommands::keys(const QString& name) const {
  const QAction* action = actions_.value(name);
  return action != nullptr ? action->shortcut().toString() : QString();
}

void MenuCommands::setEnabled(const QString& name, bool isEnabled) {
  if (QAction* action = actions_.value(name)) {
    action->setEnabled(isEnabled);
  }
}

}  // namespace cirrovane
