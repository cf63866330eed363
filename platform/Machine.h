#pragma once

#include "base/Result.h"
#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/Collation.h"
#include "platform/CommandRunner.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "platform/FolderWatch.h"
#include "platform/SystemInformation.h"
#include "platform/TimeText.h"
#include "platform/UserDefaults.h"

#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// Every platform operation that needs no window, for one machine.
class Machine {
 public:
  virtual ~Machine() = default;
  virtual const FileSystem& fileSystem() const = 0;
  virtual const FileStorage& fileStorage() const = 0;
  virtual const CommandRunner& commandRunner() const = 0;
  virtual const SystemInformation& systemInformation() const = 0;
  virtual const Clock& clock() const = 0;
  virtual const MonotonicClock& monotonicClock() const = 0;
  virtual const Collation& collation() const = 0;
  virtual const TimeText& timeText() const = 0;
  virtual const Bundle& bundle() const = 0;
  virtual UserDefaults& userDefaults() = 0;
  /// What the described machine's user says to notifications: "notDetermined", "authorized" or "denied"; absent where
  /// the system asks the user itself.
  virtual std::optional<std::string> notificationAuthorization() const = 0;
  /// A watch that tells this listener, which outlives it, as the machine does. It begins with `FolderWatch::start`.
  virtual std::unique_ptr<FolderWatch> makeFolderWatch(FolderWatchListener& listener) = 0;
};

/// Whether a folder can stand for a machine on this system, beside the machine itself.
bool takesMachineFolders();

/// The machine whose disk is the folder at an absolute path; "/" is the one that the program runs on. Each system has
/// its own implementation. Fails when the folder cannot stand for a machine.
Result<std::unique_ptr<Machine>> makeMachine(const std::string& root);

}  // namespace cirrovane
