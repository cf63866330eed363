#pragma once

#include "platform/Clipboard.h"
#include "platform/Workspace.h"
#include "ui/viewmodels/AppTab.h"
#include "ui/viewmodels/EntryRow.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/SurfaceViewModel.h"

#include <QString>
#include <QTimer>
#include <QVariant>
#include <QtQmlIntegration>

namespace cirrovane {

/// The main window around its pages: the tabs, the refresh and the updates.
class ShellViewModel : public cirrovane::SurfaceViewModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(cirrovane::ListModelBase* primaryTabs READ primaryTabs CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* extraTabs READ extraTabs CONSTANT)
  Q_PROPERTY(QString selectedTab READ selectedTab WRITE select NOTIFY selectedTabChanged)
  Q_PROPERTY(QString extraTabsLabel READ extraTabsLabel NOTIFY selectedTabChanged)
  Q_PROPERTY(QString updateStatusLine READ updateStatusLine NOTIFY updateStatusLineChanged)

 public:
  ShellViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, Clipboard& clipboard, Workspace& workspace,
                 const AppTab& firstTab, QObject* parent = nullptr);

  ListModel<EntryRow>* primaryTabs() { return &primaryTabs_; }
  ListModel<EntryRow>* extraTabs() { return &extraTabs_; }

  QString selectedTab() const { return selectedTab_; }
  /// The title of the chosen tab when it is one of the menu's; "More" otherwise.
  QString extraTabsLabel() const;
  QString updateStatusLine() const;
  /// "Build v1.2 (45)"; for a moment after copyBuild() "Copied v1.2 (45)".
  QString buildLabel() const override;

  /// Shows the tab of this id; an unknown one shows the first tab.
  void select(const QString& id);

  /// A shortcut as the system writes it: "Ctrl+U".
  Q_INVOKABLE QString shortcutText(const QVariant& shortcut) const;

  /// Asks for the sheet of what the verdict does not vouch for: coverageRequested() comes.
  Q_INVOKABLE void reviewCoverage() { emit coverageRequested(); }
  Q_INVOKABLE void openReleaseNotes();
  /// Puts the version label on the clipboard.
  Q_INVOKABLE void copyBuild();

 signals:
  void selectedTabChanged();
  void updateStatusLineChanged();
  void coverageRequested();

 private:
  Clipboard& clipboard_;
  Workspace& workspace_;
  ListModel<EntryRow> primaryTabs_;
  ListModel<EntryRow> extraTabs_;
  QString selectedTab_;
  QTimer copiedTimer_;
};

}  // namespace cirrovane
