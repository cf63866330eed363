#include "platform/Desktop.h"
#include "platform/macos/ApplicationActivation.h"
#include "platform/macos/MacMotionPreference.h"
#include "platform/macos/MacNotificationCenter.h"
#include "platform/macos/MacSymbolSource.h"
#include "platform/macos/MacWorkspace.h"
#include "platform/macos/StandardUpdater.h"
#include "platform/macos/WatchingActivity.h"
#include "platform/macos/WorkspaceNotice.h"

#include <optional>
#include <utility>

namespace cirrovane {
namespace {

class MacDesktop final : public Desktop {
 public:
  explicit MacDesktop(const Bundle& bundle) : notificationCenter_(bundle) {}

  NotificationCenter& notificationCenter() override { return notificationCenter_; }
  void onNotificationActivated(std::function<void()> activated) override {
    notificationCenter_.onActivated(std::move(activated));
  }
  void onWake(std::function<void()> woke) override {
    wakeNotice_.emplace(WorkspaceNotice::Event::machineWoke, std::move(woke));
  }
  void activate() override { activateApplication(); }
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
  return std::make_unique<MacDesktop>(machine.bundle());
}

}  // namespace cirrovane
