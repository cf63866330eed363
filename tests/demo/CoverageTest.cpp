#include "tests/demo/DemoMacFixture.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ICloudAttribute.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DemoCoverage : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  json coverage() const {
    return json::parse(runProgram(CIRROVANE_BIN_DIR "/cirrovanectl", {"--mac-root", root(), "coverage", "--json"}).out);
  }
  std::vector<std::string> kinds() const {
    std::vector<std::string> kinds;
    const json found = coverage();
    for (const json& gap : found["gaps"]) {
      kinds.push_back(gap["kind"]);
    }
    return kinds;
  }
  std::set<std::string> gapPaths() const {
    std::set<std::string> paths;
    const json found = coverage();
    for (const json& gap : found["gaps"]) {
      paths.insert(gap["path"]);
    }
    return paths;
  }
};

TEST_F(DemoCoverage, newMac_hasOneGapOfEachKind) {
  EXPECT_THAT(kinds(), ElementsAre("pendingPackage", "pendingHidden", "syncPaused", "excluded", "stateUnknown",
                                   "notInICloud", "unreadableFolder", "filesLost"));
}

TEST_F(DemoCoverage, settledMac_isComplete) {
  succeed("settle");
  const json found = coverage();
  EXPECT_EQ(found["complete"], true) << found;
  EXPECT_EQ(found["acknowledged"], 0);
}

TEST_F(DemoCoverage, unsettledMac_isAsItWasAtFirst) {
  const std::set<std::string> before = gapPaths();
  succeed("settle");
  succeed("unsettle");
  EXPECT_EQ(gapPaths(), before);
  EXPECT_EQ(kinds().size(), 8U);
}

TEST_F(DemoCoverage, settle_leavesWhatTheApplicationRemembers) {
  succeed("settle");
  const std::string file = home() + "/Library/Application Support/com.quillmere.Cirrovane/coverage.json";
  EXPECT_FALSE(exists(file));
  const std::string own = R"([{"counts": [{"at": "2026-11-15T18:21:10Z", "files": 15}], "path": "/x"}])";
  for (const std::string& text : {own, std::string("nonsense"), std::string("{}")}) {
    writeFile(file, text);
    succeed("settle");
    EXPECT_EQ(readFile(file), text);
  }
}

// What an ordinary week brings: at no moment more than one gap that was not there at first.
TEST_F(DemoCoverage, ordinaryWeek_bringsNoMoreThanOneGapAtATime) {
  succeed("settle");
  const std::string work = drive() + "/Client Work";
  const auto expectAtMostOneGap = [&](const std::string& what) { EXPECT_LE(coverage()["gaps"].size(), 1U) << what; };
  const auto add = [](const std::string& path, const std::string& state) {
    writeFile(path);
    setICloudAttribute(path, state);
  };
  for (int day = 0; day < 7; ++day) {
    const std::string number = std::to_string(day);
    // A document is open: its lock, a temporary copy, and what Finder writes beside it.
    for (const std::string name : {"~$Letter.docx", ".~lock.Letter.odt#", "Letter.tmp", ".DS_Store", "._Letter.docx"}) {
      writeFile(work + "/" + name);
    }
    expectAtMostOneGap("office");
    for (const std::string name : {"~$Letter.docx", ".~lock.Letter.odt#", "Letter.tmp"}) {
      std::filesystem::remove(work + "/" + name);
    }
    // The system evicts a file: a placeholder in its place, or nothing but its state.
    writeFile(work + "/.Plan " + number + ".pdf.icloud");
    add(work + "/Evicted " + number + ".pdf", "isUploaded=true\ndownloadingStatus=notDownloaded\n");
    expectAtMostOneGap("evicted");
    // A repository takes a commit, whose objects go up one after another.
    add(work + "/Site/.git/objects/" + number + "/a", "isUploaded=false\n");
    add(work + "/Site/.git/objects/" + number + "/b", "isUploaded=false\nisUploading=true\n");
    expectAtMostOneGap("commit");
    for (const std::string name : {"a", "b"}) {
      setICloudAttribute(work + "/Site/.git/objects/" + number + "/" + name, "isUploaded=true\n");
    }
    // A photo library takes pictures in.
    const std::string library = work + "/Harbour Café/Shoot.photoslibrary";
    add(library + "/originals/" + number + ".heic", "isUploaded=false\n");
    add(library + "/resources/" + number + "_thumb.jpg", "isUploaded=false\n");
    expectAtMostOneGap("pictures");
    setICloudAttribute(library + "/originals/" + number + ".heic", "isUploaded=true\n");
    setICloudAttribute(library + "/resources/" + number + "_thumb.jpg", "isUploaded=true\n");
    // A file is thrown away.
    add(drive() + "/.Trash/Old " + number + ".txt", "isUploaded=false\n");
    expectAtMostOneGap("trash");
    EXPECT_THAT(coverage()["gaps"], IsEmpty()) << "evening of day " << day;
  }
}

}  // namespace
}  // namespace cirrovane::test
