#include "tests/cli/Program.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Pending : public testing::Test {
 protected:
  /// A pending file of that many bytes.
  std::string addPending(const std::string& name, std::size_t bytes) const {
    std::string path = mac_.addFile(name, "isUploaded=false");
    writeFile(path, std::string(bytes, 'x'));
    setICloudAttribute(path, "isUploaded=false");
    return path;
  }
  ChildResult pending(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "pending"});
    return ctl(more);
  }
  nlohmann::json asJSON(std::vector<std::string> more = {}) const {
    more.emplace_back("--json");
    const ChildResult result = pending(more);
    EXPECT_EQ(result.exitStatus, 0);
    return parsed(result.out);
  }
  std::vector<std::string> namesOf(const nlohmann::json& uploads) const {
    std::vector<std::string> names;
    for (const auto& file : uploads.at("files")) {
      const auto path = file.at("filePath").get<std::string>();
      names.push_back(path.substr(path.rfind('/') + 1));
    }
    return names;
  }

  const MacTree mac_;
};

TEST_F(Pending, nothingLeft_saysSo) {
  mac_.addFile("clean", "isUploaded=true");
  const ChildResult result = pending();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, "Nothing is left to upload.\n");
  const auto uploads = asJSON();
  EXPECT_THAT(keysOf(uploads), ElementsAre("files", "generatedAt", "pendingBytes", "pendingFiles", "stuckFiles"));
  EXPECT_EQ(uploads["files"], nlohmann::json::array());
}

TEST_F(Pending, files_haveSizeFolderAndBeginning) {
  addPending("small", 10);
  const std::string path = addPending("large", 5000);
  mac_.addFile("clean", "isUploaded=true");
  mac_.addFile("refused", "isUploaded=true\nuploadingError=No space");
  const auto uploads = asJSON();
  EXPECT_EQ(uploads["pendingFiles"], 3);
  EXPECT_GE(uploads["pendingBytes"], 5010);
  EXPECT_EQ(uploads["stuckFiles"], 0);
  const auto& first = uploads["files"][0];
  EXPECT_THAT(keysOf(first), ElementsAre("bytes", "filePath", "folderName", "isStuck", "pendingSince"));
  EXPECT_EQ(first["filePath"], path);
  EXPECT_EQ(first["bytes"], 5000);
  EXPECT_EQ(first["isStuck"], false);
  EXPECT_EQ(first["pendingSince"], uploads["generatedAt"]);
}

TEST_F(Pending, order_isAsAskedFor) {
  addPending("b", 10);
  static_cast<void>(asJSON());
  addPending("c", 10);
  addPending("a", 500);
  EXPECT_THAT(namesOf(asJSON()), ElementsAre("a", "b", "c"));
  EXPECT_THAT(namesOf(asJSON({"--sort", "name"})), ElementsAre("a", "b", "c"));
  addPending("0", 500);
  EXPECT_THAT(namesOf(asJSON({"--sort", "size"})), ElementsAre("0", "a", "b", "c"));
  EXPECT_THAT(namesOf(asJSON({"--limit", "2"})), ElementsAre("0", "a"));
  EXPECT_EQ(asJSON({"--limit", "0"})["pendingFiles"], 4);
}

TEST_F(Pending, longestWaiting_isFirstByAge) {
  const std::string first = addPending("z", 1);
  writeFile(mac_.storePath("uploads.json"),
            R"({"files": [{"filePath": ")" + first +
                R"(", "bytes": 1, "pendingSince": "2026-01-01T00:00:00Z", "pendingBytesThen": 1}],)"
                R"( "flows": [], "isWhole": true})");
  addPending("a", 1);
  const auto uploads = asJSON({"--sort", "age"});
  EXPECT_THAT(namesOf(uploads), ElementsAre("z", "a"));
  EXPECT_EQ(uploads["files"][0]["pendingSince"], "2026-01-01T00:00:00Z");
  EXPECT_EQ(uploads["files"][0]["isStuck"], true);
  EXPECT_EQ(uploads["stuckFiles"], 1);
  EXPECT_THAT(pending().out, HasSubstr("1 file is stuck."));
}

TEST_F(Pending, wrongUsage_isRefused) {
  EXPECT_EQ(pending({"--sort", "colour"}).exitStatus, 2);
  EXPECT_EQ(pending({"--limit", "-1"}).exitStatus, 2);
  EXPECT_EQ(pending({""}).exitStatus, 2);
}

TEST_F(Pending, otherCommands_recordOrRead) {
  addPending("a", 1000);
  const std::vector<std::string> root = {"--mac-root", mac_.path()};
  const ChildResult check = ctl({root[0], root[1], "check"});
  EXPECT_THAT(check.out, HasSubstr("Left to upload      1 file, 1 KB, no estimate yet"));
  EXPECT_THAT(namesIn(mac_.storeFolder()), Not(testing::Contains("uploads.json")));
  EXPECT_EQ(ctl({root[0], root[1], "refresh"}).exitStatus, 1);
  EXPECT_THAT(namesIn(mac_.storeFolder()), testing::Contains("uploads.json"));
}

TEST_F(Pending, diskThatIsFull_isSaidAndTheAnswerStands) {
  addPending("a", 10);
  const ChildResult result = ctlOnAFullDisk({"--mac-root", mac_.path(), "pending", "--json"});
  EXPECT_EQ(parsed(result.out)["pendingFiles"], 1);
  EXPECT_THAT(result.err, HasSubstr("cirrovanectl: "));
}

TEST_F(Pending, wait_showsABarThatIsTakenBack) {
  const std::string path = addPending("a", 1000);
  addPending("b", 3000);
  Terminal terminal;
  RunningProgram program({"--mac-root", mac_.path(), "check", "--wait"}, terminal.programEnd(), terminal.programEnd(),
                         {{"TERM", "xterm"}});
  terminal.closeProgramEnd();
  terminal.waitFor("[--------------------] 0 of 2 files, 0 bytes of 4 KB, no estimate yet");
  setICloudAttribute(path, "isUploaded=true");
  terminal.waitFor("[#####---------------] 1 of 2 files, 1 KB of 4 KB, no estimate yet");
  setICloudAttribute(mac_.iCloudDrive() + "/b", "isUploaded=true");
  EXPECT_EQ(program.exitStatus(), 0);
  EXPECT_THAT(terminal.wholeText(), HasSubstr("\r\x1b[K\x1b[1m"));
}

}  // namespace
}  // namespace cirrovane::test
