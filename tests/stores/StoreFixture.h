#pragma once

#include "platform/linux/host/HostDisk.h"
#include "platform/linux/host/ICUCollation.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/posix/PosixFileStorage.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {

/// A Mac root of the test's own, and what stores need of it.
class StoreTest : public testing::Test {
 protected:
  static constexpr const char* kICloudDrive = "/Library/Mobile Documents/com~apple~CloudDocs";

  std::string homePath() const { return folder_ / "Users/demo"; }
  std::string iCloudDrivePath() const { return homePath() + kICloudDrive; }
  std::string storePath(const std::string& name) const {
    return homePath() + "/Library/Application Support/com.quillmere.Cirrovane/" + name;
  }
  void makeICloudDrive() const { makeFolder(iCloudDrivePath()); }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  MacRoot root_ = std::move(*MacRoot::open((writeFile(folder_ / "machine.json", "{}"), folder_.path())));
  LinuxFileSystem fileSystem_{foldersOf(root_), hostVolume};
  PosixFileStorage storage_;
  ICUCollation collation_{"en_US"};
  ManualClock clock_;
};

}  // namespace cirrovane::test
