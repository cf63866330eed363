#include "tests/cli/Program.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Metrics : public testing::Test {
 protected:
  ChildResult metrics(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "metrics"});
    return ctl(more);
  }

  const MacTree mac_;
};

TEST_F(Metrics, unsafeMac_isPrintedWithStatusZero) {
  const std::string path = mac_.addFile("Salaries", "isUploaded=false");
  writeFile(path, std::string(5000, 'x'));
  setICloudAttribute(path, "isUploaded=false");
  const ChildResult result = metrics();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, HasSubstr("\ncirrovane_safe_to_close 0\n"));
  EXPECT_THAT(result.out, HasSubstr("\ncirrovane_pending_uploads 1\n"));
  EXPECT_THAT(result.out, HasSubstr("\ncirrovane_pending_bytes 5000\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("Salaries")));
}

TEST_F(Metrics, nothing_isRecorded) {
  mac_.addFile("a", "isUploaded=false");
  EXPECT_EQ(metrics().exitStatus, 0);
  EXPECT_EQ(parsed(ctl({"--mac-root", mac_.path(), "history", "--json"}).out), nlohmann::json::array());
}

TEST_F(Metrics, textfile_holdsThemWhole) {
  mac_.addFile("a", "isUploaded=true");
  const std::string file = mac_.path() + "/cirrovane.prom";
  const ChildResult result = metrics({"--textfile", file});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(readFile(file), HasSubstr("\ncirrovane_safe_to_close 1\n"));
}

TEST_F(Metrics, textfile_thatCannotBeWritten_isTold) {
  const ChildResult result = metrics({"--textfile", mac_.path() + "/no/such/folder/m.prom"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("The metrics could not be written: "));
}

}  // namespace
}  // namespace cirrovane::test
