#include "platform/Machine.h"
#include "platform/linux/host/AutostartLoginItem.h"
#include "platform/linux/host/HostBundle.h"
#include "platform/linux/host/HostDisk.h"
#include "platform/linux/host/HostSystemInformation.h"
#include "platform/linux/host/ICUCollation.h"
#include "platform/linux/host/ICUTimeText.h"
#include "platform/linux/host/LinuxUserDefaults.h"
#include "platform/linux/host/LogindGate.h"
#include "platform/linux/host/PlainAmountText.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/linux/macroot/RootBundle.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/linux/macroot/RootLoginItem.h"
#include "platform/linux/macroot/RootPowerGate.h"
#include "platform/linux/macroot/RootSystemInformation.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/linux/watch/InotifyWatch.h"
#include "platform/posix/PosixCommandRunner.h"
#include "platform/posix/PosixFileStorage.h"

#include <memory>
#include <string>
#include <utility>

namespace cirrovane {
namespace {

/// What every machine on this system has of ours: its clocks, its user's language, its storage and its watch.
Machine machineOfThisSystem() {
  Machine machine;
  machine.fileStorage = std::make_unique<PosixFileStorage>();
  machine.clock = std::make_unique<SystemClock>();
  machine.monotonicClock = std::make_unique<SystemMonotonicClock>();
  machine.collation = std::make_unique<ICUCollation>();
  machine.timeText = std::make_unique<ICUTimeText>();
  machine.amountText = std::make_unique<PlainAmountText>();
  machine.makeFolderWatch = [](FolderWatchListener& listener) { return std::make_unique<InotifyWatch>(listener); };
  return machine;
}

void useFolders(Machine& machine, UserFolders folders, LinuxFileSystem::VolumeReading volume) {
  machine.userDefaults = std::make_unique<LinuxUserDefaults>(folders.preferences, *machine.fileStorage);
  machine.fileSystem = std::make_unique<LinuxFileSystem>(std::move(folders), std::move(volume));
}

}  // namespace

bool takesMachineFolders() {
  return true;
}

Result<Machine> makeMachine(const std::string& path) {
  const Result<MacRoot> opened = MacRoot::open(path);
  if (!opened) {
    return Failure{opened.message()};
  }
  const MacRoot& root = *opened;
  Machine machine = machineOfThisSystem();
  LinuxFileSystem::VolumeReading volume = hostVolume;
  if (root.isDescribed()) {
    volume = [root](const std::string& /*folder*/) { return volumeOf(root); };
    machine.systemInformation = std::make_unique<RootSystemInformation>(root);
    machine.bundle = std::make_unique<RootBundle>(root);
  } else {
    machine.systemInformation = std::make_unique<HostSystemInformation>();
    machine.bundle = std::make_unique<HostBundle>();
  }
  machine.notificationAuthorization = [root] { return root.notificationAuthorization(); };
  if (root.isHost()) {
    machine.loginItem =
        std::make_unique<AutostartLoginItem>(hostFolders().preferences, runningProgram, *machine.fileStorage);
    useFolders(machine, hostFolders(), std::move(volume));
    machine.commandRunner = std::make_unique<PosixCommandRunner>();
    machine.makePowerGate = [](PowerGateListener& listener) { return std::make_unique<LogindGate>(listener); };
  } else {
    machine.loginItem = std::make_unique<RootLoginItem>(root, *machine.fileStorage);
    useFolders(machine, foldersOf(root), std::move(volume));
    machine.commandRunner = commandRunnerOf(root);
    machine.makePowerGate = [root](PowerGateListener& listener) {
      return std::make_unique<RootPowerGate>(listener, root);
    };
  }
  return machine;
}

}  // namespace cirrovane
