#include "platform/Desktop.h"
#include "platform/WakeNotice.h"
#include "platform/qt/DBusFileManager.h"
#include "platform/qt/DBusNotificationCenter.h"
#include "platform/qt/QtWorkspace.h"

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace cirrovane {
namespace {

/// Calls a function on the main thread when the machine wakes from sleep, and also when its clock is set. To be made
/// when there is an application object; wakes the process at no other time.
class WakeTimer {
 public:
  explicit WakeTimer(std::function<void()> woke) : notifier_(QSocketNotifier::Read) {
    if (notice_.descriptor() < 0) {
      return;
    }
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this, woke = std::move(woke)] {
      if (notice_.take()) {
        woke();
      }
    });
    notifier_.setSocket(notice_.descriptor());
    notifier_.setEnabled(true);
  }
  ~WakeTimer() { notifier_.setEnabled(false); }

  WakeTimer(const WakeTimer&) = delete;
  WakeTimer& operator=(const WakeTimer&) = delete;

 private:
  WakeNotice notice_;
  QSocketNotifier notifier_;
};

/// A desktop of freedesktop.org's kind.
class DBusDesktop final : public Desktop {
 public:
  explicit DBusDesktop(Machine& machine)
      : notificationCenter_([&machine] { return machine.notificationAuthorization().value_or("authorized"); }),
        workspace_(makeDBusItemRevealer()) {}

  NotificationCenter& notificationCenter() override { return notificationCenter_; }
  void onNotificationActivated(std::function<void()> activated) override {
    notificationCenter_.onActivated(std::move(activated));
  }
  void onWake(std::function<void()> woke) override { wakeTimer_.emplace(std::move(woke)); }
  // The window manager does it with the window, and slows no program's timers.
  void activate() override {}
  void setWatching(bool /*isWatching*/) override {}
  Workspace& workspace() override { return workspace_; }
  MotionPreference* motionPreference() override { return nullptr; }
  const SymbolSource* symbolSource() const override { return nullptr; }
  std::optional<std::string> fontFamily() const override { return "Inter"; }
  bool opensTrayMenuOnAnyClick() const override { return false; }
  std::unique_ptr<Updater> makeUpdater() override { return nullptr; }

 private:
  DBusNotificationCenter notificationCenter_;
  QtWorkspace workspace_;
  std::optional<WakeTimer> wakeTimer_;
};

}  // namespace

std::unique_ptr<Desktop> makeDesktop(Machine& machine) {
  return std::make_unique<DBusDesktop>(machine);
}

}  // namespace cirrovane
