#include "platform/Machine.h"
#include "platform/macos/FSEventsWatch.h"
#include "platform/macos/MacAmountText.h"
#include "platform/macos/MacBundle.h"
#include "platform/macos/MacCollation.h"
#include "platform/macos/MacFileSystem.h"
#include "platform/macos/MacLoginItem.h"
#include "platform/macos/MacSystemInformation.h"
#include "platform/macos/MacTimeText.h"
#include "platform/macos/MacUserDefaults.h"
#include "platform/macos/SystemPower.h"
#include "platform/macos/SystemWalkCalls.h"
#include "platform/macos/plain/AlternativePlaces.h"
#include "platform/posix/PosixCommandRunner.h"
#include "platform/posix/PosixFileStorage.h"

#include <memory>
#include <optional>
#include <string>

namespace cirrovane {
namespace {

std::unique_ptr<FolderWatch> makeWatch(FolderWatchListener& listener, const FileSystem& files,
                                       const FileStorage& storage) {
  // Where the stores are too. The watch itself says where the folder cannot be had.
  const std::string own =
      files.applicationSupportDirectory().value_or(files.homeDirectory() + "/Library/Application Support") +
      "/com.quillmere.Cirrovane";
  static_cast<void>(storage.createFolders(own, FileAccess::privateToUser));
  return makeFSEventsWatch(listener, own);
}

}  // namespace

bool takesMachineFolders() {
  return false;
}

Result<Machine> makeMachine(const std::string& path) {
  if (path != "/") {
    return Failure{path + " cannot stand for a Mac: on macOS, Cirrovane looks at this Mac alone."};
  }
  // For the children, which inherit it, and for the threads that frameworks make; each reader of watched folders asks
  // for it again, and is the one that heeds a refusal.
  static_cast<void>(SystemMaterialization().setPolicy(PolicyScope::process, kMaterializationOff));
  Machine machine;
  machine.fileSystem = std::make_unique<MacFileSystem>();
  machine.fileStorage = std::make_unique<PosixFileStorage>();
  machine.commandRunner = std::make_unique<PosixCommandRunner>(
      [](const std::string& path) { return placeOf(path, alternativePlaces(), isExecutableFile); });
  machine.systemInformation = std::make_unique<MacSystemInformation>();
  machine.clock = std::make_unique<SystemClock>();
  machine.monotonicClock = std::make_unique<SystemMonotonicClock>();
  machine.collation = std::make_unique<MacCollation>();
  machine.timeText = std::make_unique<MacTimeText>();
  machine.amountText = std::make_unique<MacAmountText>();
  machine.bundle = std::make_unique<MacBundle>();
  machine.userDefaults = std::make_unique<MacUserDefaults>();
  machine.loginItem = std::make_unique<MacLoginItem>(*machine.bundle);
  machine.notificationAuthorization = [] { return std::optional<std::string>(); };
  machine.makeFolderWatch = [&files = *machine.fileSystem, &storage = *machine.fileStorage](
                                FolderWatchListener& listener) { return makeWatch(listener, files, storage); };
  machine.makePowerGate = [](PowerGateListener& listener) { return makeSystemPowerGate(listener, systemPower()); };
  return machine;
}

}  // namespace cirrovane
