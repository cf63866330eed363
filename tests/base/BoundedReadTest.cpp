#include "base/BoundedRead.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class BoundedReadOnDisk : public testing::Test {
 protected:
  void expectRefusal(const std::string& path, int error, bool isOpen) const {
    const BoundedRead file = readBounded(path, 100);
    EXPECT_EQ(file.error, error);
    EXPECT_EQ(file.isOpen, isOpen);
    EXPECT_EQ(file.content, "");
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
};

TEST_F(BoundedReadOnDisk, file_upToTheLimit_givesAllItsBytes) {
  for (const std::string& bytes : {std::string(), std::string("a\0b\xff", 4)}) {
    writeFile(folder_ / "file", bytes);
    const BoundedRead file = readBounded(folder_ / "file", bytes.size());
    EXPECT_EQ(file.error, 0);
    EXPECT_TRUE(file.isOpen);
    EXPECT_EQ(file.content, bytes);
  }
}

TEST_F(BoundedReadOnDisk, file_beyondTheLimit_isRefused) {
  writeFile(folder_ / "file", std::string(101, 'a'));
  expectRefusal(folder_ / "file", EFBIG, true);
}

TEST_F(BoundedReadOnDisk, nothing_isNotOpen) {
  expectRefusal(folder_ / "none", ENOENT, false);
}

TEST_F(BoundedReadOnDisk, otherThanARegularFile_isRefusedWithoutWaiting) {
  expectRefusal(folder_.path(), EINVAL, true);
  expectRefusal("/dev/zero", EINVAL, true);
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  expectRefusal(folder_ / "pipe", EINVAL, true);
}

#ifdef __linux__
TEST_F(BoundedReadOnDisk, fileThatHidesItsSize_isReadToItsEndWithinTheLimit) {
  EXPECT_NE(readBounded("/proc/self/status", kBearableFileSize).content.find("Name:"), std::string::npos);
  expectRefusal("/proc/self/status", EFBIG, true);
}
#endif

}  // namespace
}  // namespace cirrovane::test
