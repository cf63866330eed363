#include "platform/Machine.h"
#include "platform/macos/FSEventsWatch.h"
#include "platform/macos/MacBundle.h"
#include "platform/macos/MacCollation.h"
#include "platform/macos/MacFileSystem.h"
#include "platform/macos/MacSystemInformation.h"
#include "platform/macos/MacTimeText.h"
#include "platform/macos/MacUserDefaults.h"
#include "platform/macos/SystemMaterialization.h"
#include "platform/macos/plain/MacCommandRunner.h"
#include "platform/posix/PosixFileStorage.h"

namespace cirrovane {
namespace {

class MacMachine final : public Machine {
 public:
  const FileSystem& fileSystem() const override { return fileSystem_; }
  const FileStorage& fileStorage() const override { return fileStorage_; }
  const CommandRunner& commandRunner() const override { return commandRunner_; }
  const SystemInformation& systemInformation() const override { return systemInformation_; }
  const Clock& clock() const override { return clock_; }
  const MonotonicClock& monotonicClock() const override { return monotonicClock_; }
  const Collation& collation() const override { return collation_; }
  const TimeText& timeText() const override { return timeText_; }
  const Bundle& bundle() const override { return bundle_; }
  UserDefaults& userDefaults() override { return userDefaults_; }
  std::optional<std::string> notificationAuthorization() const override { return std::nullopt; }
  std::unique_ptr<FolderWatch> makeFolderWatch(FolderWatchListener& listener) override {
    // Where the stores are too. The watch itself says where the folder cannot be had.
    const std::string own = fileSystem_.applicationSupportDirectory().value_or(fileSystem_.homeDirectory() +
                                                                               "/Library/Application Support") +
                            "/com.quillmere.Cirrovane";
    static_cast<void>(fileStorage_.createFolders(own, FileAccess::privateToUser));
    return makeFSEventsWatch(listener, own);
  }

 private:
  MacFileSystem fileSystem_;
  PosixFileStorage fileStorage_;
  MacCommandRunner commandRunner_;
  MacSystemInformation systemInformation_;
  SystemClock clock_;
  SystemMonotonicClock monotonicClock_;
  MacCollation collation_;
  MacTimeText timeText_;
  MacBundle bundle_;
  MacUserDefaults userDefaults_;
};

}  // namespace

bool takesMachineFolders() {
  return false;
}

Result<std::unique_ptr<Machine>> makeMachine(const std::string& root) {
  if (root != "/") {
    return Failure{root + " cannot stand for a Mac: on macOS, Cirrovane looks at this Mac alone."};
  }
  // For the children, which inherit it, and for the threads that frameworks make; each reader of watched folders asks
  // for it again, and is the one that heeds a refusal.
  static_cast<void>(SystemMaterialization().setPolicy(PolicyScope::process, kMaterializationOff));
  return std::unique_ptr<Machine>(std::make_unique<MacMachine>());
}

}  // namespace cirrovane
