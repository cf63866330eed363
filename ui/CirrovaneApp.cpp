#include "ui/CirrovaneApp.h"

#include "ui/MenuBar.h"
#include "ui/PanelPlace.h"
#include "ui/SymbolImageProvider.h"
#include "ui/WindowFrame.h"
#include "ui/icon/ApplicationIcon.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QScreen>
#include <QTimer>
#include <chrono>
#include <optional>
#include <vector>

namespace cirrovane {
namespace {

constexpr std::chrono::seconds kLongestWaitForPicture{1};

QList<QRect> screenAreas() {
  QList<QRect> areas;
  for (const QScreen* screen : QGuiApplication::screens()) {
    areas.append(screen->availableGeometry());
  }
  return areas;
}

QUrl sourceOf(const char* file) {
  QUrl source(QStringLiteral("qrc:/Cirrovane/") + QLatin1String(file));
  return source;
}

/// Whether the desktop has one menu bar for all windows.
bool hasCommonMenuBar() {
  return QGuiApplication::platformName() == QLatin1String("cocoa");
}

}  // namespace

CirrovaneApp::CirrovaneApp(Machine& machine, Desktop& desktop, const AppTab& firstTab)
    : machine_(machine),
      desktop_(desktop),
      panels_(machine.fileSystem->homeDirectory()),
      live_({*machine.fileSystem, *machine.clock, &scanProgress_},
            {{mainExecutor_, scanExecutor_, updatesExecutor_},
             *machine.clock,
             *machine.monotonicClock,
             liveAlarm_,
             [&machine](FolderWatchListener& listener) { return machine.makeFolderWatch(listener); }}),
      dashboard_(makeWindowServices(machine, desktop.notificationCenter()),
                 {{mainExecutor_, scanExecutor_, diagnosticsExecutor_, statusExecutor_},
                  *machine.fileStorage,
                  *machine.userDefaults,
                  *machine.clock,
                  *machine.monotonicClock,
                  &cycleLimit_,
                  &staleAlarm_,
                  &live_,
                  &uploadsAlarm_},
                 {refreshTimer_, panels_, desktop.workspace(), *machine.fileSystem, *machine.timeText, exportNoteAlarm_,
                  removalAlarm_}),
      coverage_(makeCoverageKeeper(machine),
                {{mainExecutor_, coverageExecutor_, *machine.monotonicClock, &coverageAlarm_},
                 coverageFilesExecutor_,
                 *machine.clock}),
      leaveGate_({.main = mainExecutor_,
                  .looking = leaveLooksExecutor_,
                  .acting = powerExecutor_,
                  .clock = *machine.clock,
                  .monotonicClock = *machine.monotonicClock,
                  .alarms = {leaveLookAlarm_, leaveLimitAlarm_, powerAlarm_, questionAlarm_},
                  .live = live_,
                  .coverage = makeCoverageKeeper(machine),
                  .makeGate = machine.makePowerGate,
                  .supply = [&system = *machine.systemInformation] { return powerSupply(system.powerSources()); }}),
      metricsFile_(dashboard_.cycle(), coverage_.report(),
                   {mainExecutor_, metricsExecutor_, *machine.fileStorage, *machine.userDefaults,
                    versionLabel(*machine.bundle)}),
      updates_(*machine.bundle, *machine.userDefaults, desktop.workspace(), *machine.timeText, *machine.clock,
               [&desktop] { return desktop.makeUpdater(); }),
      loginItem_(*machine.loginItem),
      notificationPermission_(desktop.notificationCenter(), *machine.bundle, desktop.workspace()),
      leavingSetting_(*machine.userDefaults, leaveGate_),
      metricsSetting_(metricsFile_, panels_),
      settings_(*machine.userDefaults, {desktop.motionPreference(), &notificationPermission_, &loginItem_,
                                        &leavingSetting_, &metricsSetting_}),
      shell_(dashboard_, updates_, clipboard_, desktop.workspace(), firstTab),
      snapshot_(dashboard_, updates_, coverage_, *machine.timeText),
      scan_(dashboard_, scanProgress_, scanSteps_),
      leaving_(leaveGate_, dashboard_, *machine.timeText),
      toolInstalls_(makeToolInstaller(machine), mainExecutor_),
      tools_{toolInstalls_, clipboard_, desktop.workspace(), mainExecutor_},
      pageContext_({dashboard_, coverage_, *machine.timeText, *machine.amountText, settings_, tools_, &leaving_}) {
  desktop_.onWake([this] {
    live_.wake();
    staleAlarm_.ring();
    coverageAlarm_.ring();
    uploadsAlarm_.ring();
    leaveGate_.wake();
    leaveLookAlarm_.ring();
    leaveLimitAlarm_.ring();
    powerAlarm_.ring();
    questionAlarm_.ring();
  });
  // Whoever is to answer has to see the question first.
  connect(&leaving_, &LeaveViewModel::asked, this, &CirrovaneApp::showWindow);
  const auto& folders = dashboard_.watchlist().publishedFolders();
  desktop_.setWatching(!folders.value().empty());
  watchlistSubscription_ = folders.afterChange([this](const std::vector<WatchFolder>& now) {
    desktop_.setWatching(!now.empty());
    if (dashboard_.verdict().isKnown()) {
      coverage_.follow(now);
    }
  });
  verdictSubscription_ = dashboard_.publishedVerdict().afterChange([this](const ShownVerdict& verdict) {
    // The first look is not to share the disk with the first scan.
    if (verdict.isKnown()) {
      coverage_.follow(dashboard_.watchlist().folders());
    }
  });
  connect(&snapshot_, &SnapshotViewModel::coverageRequested, this, [this] {
    showWindow();
    shell_.reviewCoverage();
  });
  // Where the module lies in the program; the types that C++ gives it are not found otherwise.
  engine_.addImportPath(QStringLiteral("qrc:/"));
  // The engine takes the provider over.
  engine_.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider(desktop.symbolSource()));
  makeWindow();
  if (window_ != nullptr) {
    // Whether there is a tray is asked when the last surface goes: at the start of a session it may come after us.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    constexpr auto once = static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection);
    connect(window_, &QQuickWindow::frameSwapped, this, &CirrovaneApp::makeIcons, once);
    // A window that nobody sees draws nothing.
    QTimer::singleShot(kLongestWaitForPicture, this, &CirrovaneApp::makeIcons);
  }
}

CirrovaneApp::~CirrovaneApp() = default;

Services CirrovaneApp::makeWindowServices(Machine& machine, NotificationCenter& notificationCenter) {
  Services services = makeServices(machine, &scanProgress_);
  services.notificationService =
      std::make_unique<GuardrailNotificationService>(notificationCenter, *machine.bundle, *machine.userDefaults);
  registerDefaults(*machine.userDefaults);
  return services;
}

void CirrovaneApp::makeWindow() {
  engine_.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell_)},
                                {QStringLiteral("settings"), QVariant::fromValue(&settings_)},
                                {QStringLiteral("scan"), QVariant::fromValue(&scan_)},
                                {QStringLiteral("context"), QVariant::fromValue(&pageContext_)},
                                {QStringLiteral("commands"), QVariant::fromValue(&commands_)},
                                {QStringLiteral("hasMenuBar"), !hasCommonMenuBar()}});
  // Before the window's own part, which wants to be on screen.
  connect(&commands_, &MenuCommands::triggered, this, &CirrovaneApp::obey);
  engine_.load(sourceOf("MainWindow.qml"));
  window_ = engine_.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
  if (window_ == nullptr) {
    return;
  }
  panels_.setParentWindow(window_);
  if (const auto frame = storedWindowFrame(*machine_.userDefaults)) {
    window_->setGeometry(fittedToScreens(*frame, screenAreas()));
  }
  if (hasCommonMenuBar()) {
    menuBar_ = makeMenuBar(commands_);
  }
  connect(window_, &QWindow::visibleChanged, this, [this](bool isVisible) {
    if (!isVisible) {
      rememberFrame();
      quitIfOutOfReach();
    }
  });
  connect(qApp, &QCoreApplication::aboutToQuit, this, &CirrovaneApp::rememberFrame);
  connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
    // A click on the icon in a Mac's Dock only makes the application the active one.
    if (state != Qt::ApplicationActive) {
      return;
    }
    // The user may come from the system's settings.
    settings_.rereadSystem();
    if (!isInSight()) {
      showWindow();
    }
  });
}

void CirrovaneApp::makeIcons() {
  if (trayIcon_) {
    return;
  }
  // A Mac takes the icon of the bundle, which is drawn with a Mac's margins.
  if (!hasCommonMenuBar()) {
    QGuiApplication::setWindowIcon(applicationIcon());
  }
  trayIcon_ = std::make_unique<TrayIcon>(snapshot_, scan_, leaving_, desktop_);
  connect(trayIcon_.get(), &TrayIcon::clicked, this, &CirrovaneApp::togglePanel);
  connect(trayIcon_.get(), &TrayIcon::panelRequested, this, &CirrovaneApp::showPanel);
  connect(trayIcon_.get(), &TrayIcon::windowRequested, this, &CirrovaneApp::showWindow);
  connect(trayIcon_.get(), &TrayIcon::quitRequested, qApp, &QCoreApplication::quit);
}

bool CirrovaneApp::isInSight() const {
  // The panel goes while a dialog that it has opened is up, and comes back after it.
  return window_->isVisible() || (panel_ && panel_->isVisible()) || QGuiApplication::modalWindow() != nullptr;
}

void CirrovaneApp::quitIfOutOfReach() {
  if (!isInSight() && !QSystemTrayIcon::isSystemTrayAvailable()) {
    QCoreApplication::quit();
  }
}

void CirrovaneApp::rememberFrame() {
  if (window_ != nullptr && (window_->windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen)) == 0) {
    storeWindowFrame(*machine_.userDefaults, window_->geometry());
  }
}

void CirrovaneApp::obey(MenuCommands::Command command) {
  switch (command) {
    case MenuCommands::Command::checkForUpdates:
      shell_.checkForUpdates();
      break;
    case MenuCommands::Command::releaseNotes:
      shell_.openReleaseNotes();
      break;
    case MenuCommands::Command::quit:
      QCoreApplication::quit();
      break;
    case MenuCommands::Command::rescan:
      shell_.rescan();
      break;
    case MenuCommands::Command::about:
    case MenuCommands::Command::settings:
    case MenuCommands::Command::showWindow:
    case MenuCommands::Command::terminologyGuide:
    case MenuCommands::Command::faq:
      showWindow();
      break;
    case MenuCommands::Command::closeWindow:
      // A menu bar at the top of the screen is the panel's too.
      (panel_ && panel_->isActive() ? panel_.get() : window_)->close();
      break;
    case MenuCommands::Command::copy:
    case MenuCommands::Command::selectAll:
    case MenuCommands::Command::minimize:
      break;
  }
}

void CirrovaneApp::bringToFront(QWindow& window) {
  window.show();
  window.raise();
  desktop_.activate();
  window.requestActivate();
}

void CirrovaneApp::showWindow() {
  bringToFront(*window_);
}

void CirrovaneApp::makePanel() {
  QQmlComponent component(&engine_, sourceOf("MenuBarPanel.qml"));
  QObject* made =
      component.createWithInitialProperties({{QStringLiteral("snapshot"), QVariant::fromValue(&snapshot_)},
                                             {QStringLiteral("settings"), QVariant::fromValue(&settings_)},
                                             {QStringLiteral("leaving"), QVariant::fromValue(&leaving_)},
                                             {QStringLiteral("commands"), QVariant::fromValue(&commands_)},
                                             {QStringLiteral("context"), QVariant::fromValue(&pageContext_)},
                                             {QStringLiteral("hasMenuBar"), !hasCommonMenuBar()}});
  panel_.reset(qobject_cast<QQuickWindow*>(made));
  if (!panel_) {
    return;
  }
  connect(panel_.get(), &QWindow::visibleChanged, this, &CirrovaneApp::quitIfOutOfReach);
  connect(panel_.get(), &QWindow::heightChanged, this, &CirrovaneApp::placePanel);
  connect(panel_.get(), &QWindow::activeChanged, this, [this] {
    if (panel_->isVisible() && !panel_->isActive()) {
      panelLeft_.start();
      panel_->close();
    }
  });
}

void CirrovaneApp::showPanel() {
  makeIcons();
  if (!panel_) {
    makePanel();
  }
  if (panel_) {
    placePanel();
    bringToFront(*panel_);
  }
}

void CirrovaneApp::togglePanel() {
  const auto sinceItLeft =
      panelLeft_.isValid() ? std::optional(std::chrono::milliseconds(panelLeft_.elapsed())) : std::nullopt;
  switch (panelClick(panel_ && panel_->isVisible(), sinceItLeft)) {
    case PanelClick::shows:
      showPanel();
      break;
    case PanelClick::takesAway:
      panel_->close();
      break;
    case PanelClick::nothing:
      break;
  }
}

void CirrovaneApp::placePanel() {
  const QRect icon = trayIcon_ ? trayIcon_->geometry() : QRect();
  const QScreen* screen = icon.isEmpty() ? nullptr : QGuiApplication::screenAt(icon.center());
  const QRect area = (screen != nullptr ? screen : QGuiApplication::primaryScreen())->availableGeometry();
  panel_->setProperty("availableHeight", area.height());
  panel_->setPosition(panelPlace(icon, panel_->size(), area));
}

}  // namespace cirrovane
