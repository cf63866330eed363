#include "base/FileDescriptor.h"
#include "core/ICloudScanEngine.h"
#include "core/ScanIndex.h"
#include "platform/linux/host/HostDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "tests/core/Builders.h"
#include "tests/core/NaiveScan.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"

#include <climits>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class ScanIndexOnDisk : public testing::Test {
 protected:
  void expectAgreement(const ScanIndex& index) const {
    EXPECT_EQ(withoutFreshIdentifiers(index.report()),
              withoutFreshIdentifiers(ICloudScanEngine(fileSystem, clock).scan(folders)));
  }

  const TemporaryFolder folder{CIRROVANE_TEST_DIR};
  const LinuxFileSystem fileSystem{hostFolders(), hostVolume};
  ManualClock clock{at(12)};
  std::vector<WatchFolder> folders = {makeFolder("Work", folder.path())};
};

TEST_F(ScanIndexOnDisk, update_inAFolderTooDeepForAnyPath_agreesWithAFullScan) {
  std::string path = folder.path();
  const std::string name(200, 'd');
  FileDescriptor bottom(open(path.c_str(), O_RDONLY | O_DIRECTORY));
  while (path.size() < 2 * PATH_MAX) {
    ASSERT_EQ(mkdirat(bottom.get(), name.c_str(), 0700), 0);
    bottom = FileDescriptor(openat(bottom.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
    path += "/" + name;
  }
  ScanIndex index = ScanIndex::scan(folders, fileSystem, clock);

  constexpr std::string_view kPending = "isUploaded=false";
  const FileDescriptor file(openat(bottom.get(), "last", O_WRONLY | O_CREAT, 0600));
  ASSERT_EQ(fsetxattr(file.get(), "user.icloud", kPending.data(), kPending.size(), 0), 0);
  ASSERT_FALSE(fileSystem.exists(path + "/last"));
  index.update(std::vector<FolderChange>{{path, "last"}});
  EXPECT_EQ(index.report().metrics.pendingUploads, 1);
  expectAgreement(index);
}

TEST_F(ScanIndexOnDisk, update_ofARefusedFolder_agreesWithAFullScan) {
  writeFile(folder / "A/file");
  setICloudAttribute(folder / "A/file", "isUploaded=false");
  ScanIndex index = ScanIndex::scan(folders, fileSystem, clock);
  setICloudAttribute(folder / "A", "isListable=false");
  index.update(std::vector<FolderChange>{{folder / "A", ""}});
  EXPECT_EQ(index.report().metrics.pendingUploads, 0);
  expectAgreement(index);
  setICloudAttribute(folder / "A", "isListable=true");
  index.update(std::vector<FolderChange>{{folder.path(), "A"}});
  EXPECT_EQ(index.report().metrics.pendingUploads, 1);
  expectAgreement(index);
}

}  // namespace
}  // namespace cirrovane::test
