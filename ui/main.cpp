// cirrovane, the window and the tray icon. Here: the options, one instance per user, the start and the end.
//   CirrovaneApp      makes everything once and connects it: dashboard, view models, window, tray icon, panel
//   viewmodels/       turn results into texts and choices: one class a page, ShellViewModel and SnapshotViewModel
//   qml/, items/      lay them out and draw them
//   ../coordinator    scans and judges (RefreshCycle), does the window's errands (DashboardViewModel)

#include "base/DisplayText.h"
#include "base/Heaps.h"
#include "platform/CommandRunner.h"
#include "platform/Desktop.h"
#include "platform/qt/SingleInstance.h"
#include "ui/CirrovaneApp.h"
#include "ui/DrawingMeans.h"
#include "ui/WhoDraws.h"

#include <QApplication>
#include <QFont>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QtQml/qqmlextensionplugin.h>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

Q_IMPORT_QML_PLUGIN(CirrovanePlugin)

namespace cirrovane {
namespace {

constexpr int kWrongUsage = 2;
constexpr int kCouldNot = 3;
/// What a later start asks the first one for.
constexpr const char* kWindowMessage = "window";
constexpr const char* kPanelMessage = "panel";

struct Options {
  std::string macRoot = "/";
  bool opensPanel = false;
  bool tellsRenderer = false;
};

/// The status to end with at once; absent when the application is to start.
std::optional<int> readOptions(int argumentCount, char** arguments, Options& options) {
  CLI::App app("Is it safe to close this Mac without losing work that has not reached iCloud Drive?", "cirrovane");
  if (takesMachineFolders()) {
    app.add_option("--mac-root", options.macRoot, "Folder that stands for a Mac's disk (default: this machine)")
        ->type_name("DIR");
  }
  app.add_flag("--panel", options.opensPanel, "Open the menu-bar panel at the start");
  // Without a group it is not in the help: nobody but this program uses it.
  app.add_flag(kTellRendererOption, options.tellsRenderer)->group("");
  // The toolkit has options of its own.
  app.allow_extras();
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }
  return std::nullopt;
}

const AppTab& firstTab() {
  const char* requested = std::getenv("CIRROVANE_DEMO_TAB");
  return initialTab(requested != nullptr ? std::optional<std::string_view>(requested) : std::nullopt);
}

/// Before there is a window or a thread.
void saveMemory() {
  limitHeaps();
  // The symbols' shared texture, which is else as large as the window and mostly empty.
  for (const char* side : {"QSG_ATLAS_WIDTH", "QSG_ATLAS_HEIGHT"}) {
    if (!qEnvironmentVariableIsSet(side)) {
      qputenv(side, "512");
    }
  }
}

void setUpFont(const Desktop& desktop) {
  QFont font = QApplication::font();
  if (const auto family = desktop.fontFamily()) {
    font = QFont(QString::fromStdString(*family));
    font.setPixelSize(14);
  }
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
  // Figures of one width: a time that changes does not shake. Older toolkits cannot ask a face for them.
  font.setFeature("tnum", 1);
#endif
  QApplication::setFont(font);
}

int runApplication(Machine& machine, SingleInstance& instance, bool opensPanel) {
  const std::unique_ptr<Desktop> desktop = makeDesktop(machine);
  setUpFont(*desktop);
  auto app = std::make_unique<CirrovaneApp>(machine, *desktop, firstTab());
  if (!app->isComplete()) {
    std::fputs("cirrovane: The window could not be made.\n", stderr);
    return kCouldNot;
  }
  desktop->onNotificationActivated([&] { app->showWindow(); });
  const auto show = [&](const std::string& message) {
    message == kPanelMessage ? app->showPanel() : app->showWindow();
  };
  instance.onMessage(show);
  show(opensPanel ? kPanelMessage : kWindowMessage);
  const int status = QApplication::exec();
  endLimitedCommands();
  // Whatever is worth keeping was saved when it changed. To take the rest down would be to wait for a probe that may
  // never come back, and Qt 6.4 crashes when it takes a menu bar down.
  std::_Exit(status);
}

int runProgram(int argumentCount, char** arguments) {
  Options options;
  if (const auto status = readOptions(argumentCount, arguments, options)) {
    return *status;
  }
  if (options.tellsRenderer) {
    return tellRendererName();
  }
  const std::string root = std::filesystem::absolute(options.macRoot).lexically_normal().native();
  auto machine = makeMachine(root);
  if (!machine) {
    std::fprintf(stderr, "cirrovane: %s\n", displayText(machine.message()).c_str());
    return kCouldNot;
  }
  saveMemory();
  endLimitedCommandsOnSignals();
  std::future<bool> isPainterDrawing = askWhoDraws();
  QApplication application(argumentCount, arguments);
  QApplication::setApplicationName(QStringLiteral("Cirrovane"));
  QApplication::setDesktopFileName(QStringLiteral("com.quillmere.Cirrovane"));
  SingleInstance instance(root);
  // A first one that hangs is no reason to leave the user without an answer.
  if (instance.start(options.opensPanel ? kPanelMessage : kWindowMessage) == SingleInstance::Start::received) {
    return 0;
  }
  if (isPainterDrawing.get()) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  }
  return runApplication(*machine, instance, options.opensPanel);
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  try {
    return cirrovane::runProgram(argumentCount, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "cirrovane: %s\n", error.what());
    return cirrovane::kCouldNot;
  }
}
