#pragma once

#include "coordinator/AppUpdateService.h"
#include "coordinator/CoverageReview.h"
#include "coordinator/DashboardViewModel.h"
#include "coordinator/LiveVerdict.h"
#include "coordinator/leaving/LeaveGate.h"
#include "platform/Desktop.h"
#include "platform/Machine.h"
#include "platform/posix/ThreadExecutor.h"
#include "platform/qt/QtClipboard.h"
#include "platform/qt/QtMainExecutor.h"
#include "platform/qt/QtPanels.h"
#include "platform/qt/QtTimer.h"
#include "ui/TrayIcon.h"
#include "ui/viewmodels/AppSettings.h"
#include "ui/viewmodels/LeaveViewModel.h"
#include "ui/viewmodels/LeavingSetting.h"
#include "ui/viewmodels/LoginItemSetting.h"
#include "ui/viewmodels/MenuCommands.h"
#include "ui/viewmodels/NotificationPermission.h"
#include "ui/viewmodels/PageContext.h"
#include "ui/viewmodels/ScanStatus.h"
#include "ui/viewmodels/ShellViewModel.h"
#include "ui/viewmodels/SnapshotViewModel.h"
#include "ui/viewmodels/ToolsEnvironment.h"

#include <QElapsedTimer>
#include <QMenuBar>
#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <memory>

namespace cirrovane {

/// The application over one machine: the coordinator and the update service for the life of the process, and the two
/// surfaces that show them.
class CirrovaneApp : public QObject {
  Q_OBJECT

 public:
  /// The machine and the desktop outlive the application.
  CirrovaneApp(Machine& machine, Desktop& desktop, const AppTab& firstTab);
  ~CirrovaneApp() override;

  /// Shows the main window, in front of all others.
  void showWindow();
  /// Shows the panel beside the tray icon.
  void showPanel();
  /// What a click on the tray icon does: shows the panel, or takes it away.
  void togglePanel();

  /// Whether both surfaces could be made.
  bool isComplete() const { return window_ != nullptr; }

 private:
  Services makeWindowServices(Machine& machine, NotificationCenter& notificationCenter);
  void makeWindow();
  void makePanel();
  void bringToFront(QWindow& window);
  /// What a command of the menus does beyond the window.
  void obey(MenuCommands::Command command);
  /// What the window's first picture can do without and would wait for: the application's icon and the one in the tray.
  void makeIcons();
  /// Puts the panel where the icon is, within the screen.
  void placePanel();
  void rememberFrame();
  /// Whether one of the surfaces is on screen.
  bool isInSight() const;
  /// Ends the application when nothing of it is left to click on.
  void quitIfOutOfReach();

  Machine& machine_;
  Desktop& desktop_;
  QtMainExecutor mainExecutor_;
  ThreadExecutor scanExecutor_;
  ThreadExecutor diagnosticsExecutor_;
  ThreadExecutor statusExecutor_;
  ThreadExecutor updatesExecutor_;
  ThreadExecutor coverageExecutor_;
  ThreadExecutor coverageFilesExecutor_;
  ThreadExecutor leaveLooksExecutor_;
  ThreadExecutor powerExecutor_;
  QtTimer refreshTimer_;
  QtTimer cycleLimit_;
  QtAlarm staleAlarm_;
  QtAlarm liveAlarm_;
  QtAlarm uploadsAlarm_;
  QtAlarm exportNoteAlarm_;
  QtAlarm removalAlarm_;
  QtAlarm coverageAlarm_;
  QtAlarm leaveLookAlarm_;
  QtAlarm leaveLimitAlarm_;
  QtAlarm powerAlarm_;
  QtAlarm questionAlarm_;
  QtPanels panels_;
  QtClipboard clipboard_;
  QtTimer scanSteps_;
  ScanProgress scanProgress_;
  LiveVerdict live_;
  DashboardViewModel dashboard_;
  CoverageReview coverage_;
  LeaveGate leaveGate_;
  AppUpdateService updates_;
  LoginItemSetting loginItem_;
  NotificationPermission notificationPermission_;
  LeavingSetting leavingSetting_;
  AppSettings settings_;
  ShellViewModel shell_;
  SnapshotViewModel snapshot_;
  ScanStatus scan_;
  LeaveViewModel leaving_;
  MenuCommands commands_;
  ToolInstalls toolInstalls_;
  ToolsEnvironment tools_;
  PageContext pageContext_;
  QQmlApplicationEngine engine_;
  QQuickWindow* window_ = nullptr;
  std::unique_ptr<QQuickWindow> panel_;
  /// When the panel last went because something else got the keyboard.
  QElapsedTimer panelLeft_;
  std::unique_ptr<TrayIcon> trayIcon_;
  /// Where the menus are not in the window.
  std::unique_ptr<QMenuBar> menuBar_;
  Subscription watchlistSubscription_;
  Subscription verdictSubscription_;
};

}  // namespace cirrovane
