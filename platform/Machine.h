#pragma once

#include "base/Result.h"
#include "platform/AmountText.h"
#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/Collation.h"
#include "platform/CommandRunner.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "platform/FolderWatch.h"
#include "platform/LoginItem.h"
#include "platform/PowerGate.h"
#include "platform/SystemInformation.h"
#include "platform/TimeText.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// Every platform operation that needs no window, for one machine. `makeMachine` sets every member.
struct Machine {
  std::unique_ptr<const FileSystem> fileSystem;
  std::unique_ptr<const FileStorage> fileStorage;
  std::unique_ptr<const CommandRunner> commandRunner;
  std::unique_ptr<const SystemInformation> systemInformation;
  std::unique_ptr<const Clock> clock;
  std::unique_ptr<const MonotonicClock> monotonicClock;
  std::unique_ptr<const Collation> collation;
  std::unique_ptr<const TimeText> timeText;
  std::unique_ptr<const AmountText> amountText;
  std::unique_ptr<const Bundle> bundle;
  std::unique_ptr<UserDefaults> userDefaults;
  std::unique_ptr<LoginItem> loginItem;
  /// What the described machine's user says to notifications: "notDetermined", "authorized" or "denied"; absent where
  /// the system asks the user itself.
  std::function<std::optional<std::string>()> notificationAuthorization;
  /// A watch that tells this listener, which outlives it, as the machine does. It begins with `FolderWatch::start`.
  std::function<std::unique_ptr<FolderWatch>(FolderWatchListener& listener)> makeFolderWatch;
  /// A gate that tells this listener, which outlives it, as the machine does. It begins with `PowerGate::start`.
  std::function<std::unique_ptr<PowerGate>(PowerGateListener& listener)> makePowerGate;
};

/// Whether a folder can stand for a machine on this system, beside the machine itself.
bool takesMachineFolders();

/// The machine whose disk is the folder at an absolute path; "/" is the one that the program runs on. Each system has
/// its own implementation. Fails when the folder cannot stand for a machine.
Result<Machine> makeMachine(const std::string& path);

}  // namespace cirrovane
