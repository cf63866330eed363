#include "platform/Machine.h"
#include "platform/linux/ICUCollation.h"
#include "platform/linux/ICUTimeText.h"
#include "platform/linux/LinuxBundle.h"
#include "platform/linux/LinuxCommandRunner.h"
#include "platform/linux/LinuxFileSystem.h"
#include "platform/linux/LinuxSystemInformation.h"
#include "platform/linux/LinuxUserDefaults.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/linux/watch/InotifyWatch.h"
#include "platform/posix/PosixFileStorage.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace cirrovane {
namespace {

class LinuxMachine final : public Machine {
 public:
  explicit LinuxMachine(MacRoot root) : root_(std::move(root)) {}

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
  std::optional<std::string> notificationAuthorization() const override { return root_.notificationAuthorization(); }
  std::unique_ptr<FolderWatch> makeFolderWatch(FolderWatchListener& listener) override {
    return std::make_unique<InotifyWatch>(listener);
  }

 private:
  MacRoot root_;
  LinuxFileSystem fileSystem_{root_};
  PosixFileStorage fileStorage_;
  LinuxCommandRunner commandRunner_{root_};
  LinuxSystemInformation systemInformation_{root_};
  SystemClock clock_;
  SystemMonotonicClock monotonicClock_;
  ICUCollation collation_;
  ICUTimeText timeText_;
  LinuxBundle bundle_{root_};
  LinuxUserDefaults userDefaults_{root_, fileStorage_};
};

}  // namespace

bool takesMachineFolders() {
  return true;
}

Result<std::unique_ptr<Machine>> makeMachine(const std::string& root) {
  Result<MacRoot> opened = MacRoot::open(root);
  if (!opened) {
    return Failure{opened.message()};
  }
  return std::unique_ptr<Machine>(std::make_unique<LinuxMachine>(std::move(*opened)));
}

}  // namespace cirrovane
