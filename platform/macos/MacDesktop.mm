#include "platform/Desktop.h"
#include "platform/macos/MacNotificationCenter.h"
#include "platform/macos/MacSymbolSource.h"
#include "platform/macos/MacWorkspace.h"
#include "platform/macos/StandardUpdater.h"
#include "platform/macos/SystemPower.h"
#include "platform/macos/SystemQuits.h"
#include "platform/macos/WorkspaceNotice.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace cirrovane {
namespace {

/// "Reduce motion" of the system settings' accessibility page.
class MacMotionPreference final : public MotionPreference {
 public:
  bool isReduced() const override {
    @autoreleasepool {
      return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
    }
  }
  void onChange(std::function<void()> changed) override {
    notice_.reset();
    if (changed) {
      notice_.emplace(WorkspaceNotice::Event::motionPreferenceChanged, std::move(changed));
    }
  }

 private:
  std::optional<WorkspaceNotice> notice_;
};

/// Keeps the system from slowing this process's timers while no window of it is in sight; the Mac may still go to
/// sleep. For as long as it lives.
class WatchingActivity {
 public:
  WatchingActivity() {
    @autoreleasepool {
      token_ = [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                            reason:@"Watching whether files have reached iCloud Drive"];
    }
  }
  ~WatchingActivity() {
    @autoreleasepool {
      [NSProcessInfo.processInfo endActivity:token_];
    }
  }

  WatchingActivity(const WatchingActivity&) = delete;
  WatchingActivity& operator=(const WatchingActivity&) = delete;

 private:
  id<NSObject> token_;
};

class MacDesktop final : public Desktop {
 public:
  explicit MacDesktop(Machine& machine) : notificationCenter_(*machine.bundle) {
    // Gates that are made from now on hear of the system's quits as well.
    machine.makePowerGate = [quits = std::make_shared<const SystemQuits>()](PowerGateListener& listener) {
      PowerSystem system = systemPower();
      system.hearQuits = [quits](PowerSystem::QuitAsked ask) { return quits->hear(std::move(ask)); };
      return makeSystemPowerGate(listener, std::move(system));
    };
  }

  NotificationCenter& notificationCenter() override { return notificationCenter_; }
  void onNotificationActivated(std::function<void()> activated) override {
    notificationCenter_.onActivated(std::move(activated));
  }
  void onWake(std::function<void()> woke) override {
    wakeNotice_.emplace(WorkspaceNotice::Event::machineWoke, std::move(woke));
  }
  void activate() override {
    @autoreleasepool {
      // Not its successor of macOS 14, which the active application may decline.
      [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
    }
  }
  void setWatching(bool isWatching) override {
    if (!isWatching) {
      activity_.reset();
    } else if (!activity_) {
      activity_.emplace();
    }
  }
  Workspace& workspace() override { return workspace_; }
  MotionPreference* motionPreference() override { return &motionPreference_; }
  const SymbolSource* symbolSource() const override { return &symbolSource_; }
  std::optional<std::string> fontFamily() const override { return std::nullopt; }
  bool opensTrayMenuOnAnyClick() const override { return true; }
  std::unique_ptr<Updater> makeUpdater() override { return makeStandardUpdater(); }

 private:
  MacNotificationCenter notificationCenter_;
  MacWorkspace workspace_;
  MacMotionPreference motionPreference_;
  MacSymbolSource symbolSource_;
  std::optional<WorkspaceNotice> wakeNotice_;
  std::optional<WatchingActivity> activity_;
};

}  // namespace

std::unique_ptr<Desktop> makeDesktop(Machine& machine) {
  return std::make_unique<MacDesktop>(machine);
}

}  // namespace cirrovane
