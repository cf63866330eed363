#pragma once

#include "platform/Machine.h"
#include "platform/MotionPreference.h"
#include "platform/NotificationCenter.h"
#include "platform/SymbolSource.h"
#include "platform/Updater.h"
#include "platform/Workspace.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// Every platform operation that needs a user in front of a screen and that the toolkit does not offer. Main thread
/// only.
class Desktop {
 public:
  virtual ~Desktop() = default;
  virtual NotificationCenter& notificationCenter() = 0;
  /// Has a function called on the main thread whenever the user clicks on a notification of ours.
  virtual void onNotificationActivated(std::function<void()> activated) = 0;
  /// Has a function called on the main thread whenever the machine wakes from sleep, and maybe at other times too.
  virtual void onWake(std::function<void()> woke) = 0;
  /// Makes this application the active one, where a window that asks for the keyboard does not.
  virtual void activate() = 0;
  /// Says whether this program watches something, so that the system lets its timers run on time meanwhile.
  virtual void setWatching(bool isWatching) = 0;
  virtual Workspace& workspace() = 0;
  /// nullptr where the system has no such preference.
  virtual MotionPreference* motionPreference() = 0;
  /// nullptr where the system has no symbols of its own.
  virtual const SymbolSource* symbolSource() const = 0;
  /// The typeface of all text; absent where the toolkit takes the system's own by itself.
  virtual std::optional<std::string> fontFamily() const = 0;
  /// Whether a tray icon's menu would open on every click, where a plain click is wanted for something else.
  virtual bool opensTrayMenuOnAnyClick() const = 0;
  /// Starts the framework for updates; nullptr where there is none.
  virtual std::unique_ptr<Updater> makeUpdater() = 0;
};

/// The desktop that the user is at; each system has its own implementation. Needs an application object; the machine
/// outlives the desktop. Where the system asks applications alone before a shutdown, gates to the machine's power that
/// are made after this hear of it.
std::unique_ptr<Desktop> makeDesktop(Machine& machine);

}  // namespace cirrovane
