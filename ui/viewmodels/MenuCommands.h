#pragma once

#include <QAction>
#include <QHash>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQmlIntegration>

namespace cirrovane {

/// The commands of the menus: one list for the bar in the window and for the one that a Mac has at the top of the
/// screen.
class MenuCommands : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(QVariantList menus READ menuList CONSTANT)

 public:
  enum class Command {
    about,
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

  /// One menu; nullptr stands for a line between two commands.
  struct Menu {
    QString title;
    QList<QAction*> actions;
  };

  explicit MenuCommands(QObject* parent = nullptr);

  /// In the bar's order. Each action says by its role whether a Mac moves it into the application's menu.
  const QList<Menu>& menus() const { return menus_; }
  /// The same for QML: each with its title and its actions.
  QVariantList menuList() const;

  /// Whether a command, by its enumerator's name, can be given now.
  Q_INVOKABLE void setEnabled(const QString& name, bool isEnabled);

 signals:
  /// With the enumerator's name for QML, which knows only enumerators that begin with a capital.
  void triggered(cirrovane::MenuCommands::Command command, const QString& name);

 private:
  QAction* add(Command command, const QString& text, QAction::MenuRole role, const QKeySequence& shortcut = {});

  QHash<QString, QAction*> actions_;
  QList<Menu> menus_;
};

}  // namespace cirrovane
