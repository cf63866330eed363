#pragma once

#include "ui/viewmodels/ListModel.h"

#include <QAction>
#include <QHash>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A command of a menu in the window.
struct CommandRow {
  Q_GADGET
  Q_PROPERTY(QAction* action MEMBER action)

 public:
  /// nullptr for a line between two commands.
  QAction* action = nullptr;

  friend bool operator==(const CommandRow&, const CommandRow&) = default;
  friend QString keyOf(const CommandRow& row) { return row.action != nullptr ? row.action->text() : QString(); }
};

/// A menu in the window with the list of its commands.
struct MenuRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(cirrovane::ListModelBase* commands MEMBER commands)

 public:
  QString title;
  /// Belongs to the object that has the menus.
  ListModelBase* commands = nullptr;

  friend bool operator==(const MenuRow&, const MenuRow&) = default;
  friend const QString& keyOf(const MenuRow& row) { return row.title; }
};

/// The commands of the menus, for the bar in the window and for a Mac's bar at the top of the screen.
class MenuCommands : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(cirrovane::ListModelBase* menus READ menuList CONSTANT)

 public:
  enum class Command {
    about,
    settings,
    checkForUpdates,
    releaseNotes,
    quit,
    copy,
    selectAll,
    rescan,
    minimize,
    closeWindow,
    showWindow,
    terminologyGuide,
    faq,
  };
  Q_ENUM(Command)

  /// A menu. nullptr stands for a line between two commands.
  struct Menu {
    QString title;
    QList<QAction*> actions;
  };

  explicit MenuCommands(QObject* parent = nullptr);

  /// In the bar's order. An action's role says whether a Mac moves it into the application's menu.
  const QList<Menu>& menus() const { return menus_; }
  /// The menus for the window.
  ListModel<MenuRow>* menuList() { return &menuList_; }

  /// Gives the command of this enumerator, unless it is switched off.
  Q_INVOKABLE void trigger(const QString& name);
  /// The keys that give it, as a text that QKeySequence reads; empty without any.
  Q_INVOKABLE QString keys(const QString& name) const;
  /// Switches the command of this enumerator on or off.
  Q_INVOKABLE void setEnabled(const QString& name, bool isEnabled);

 signals:
  /// The name is the enumerator's, for QML: it knows only enumerators that begin with a capital.
  void triggered(cirrovane::MenuCommands::Command command, const QString& name);

 private:
  void fillMenuList();
  QAction* add(Command command, const QString& text, QAction::MenuRole role, const QKeySequence& shortcut = {});

  QHash<QString, QAction*> actions_;
  QList<Menu> menus_;
  ListModel<MenuRow> menuList_;
};

}  // namespace cirrovane
