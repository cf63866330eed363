#include "demo/Uploading.h"
#include "tests/demo/DemoMacFixture.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <unistd.h>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using demo::timeWithPauses;
using demo::UploadOutcome;
using demo::UploadPause;
using demo::UploadPlan;
using demo::WaitingFile;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* kPending = "isUploaded=false\n";
constexpr const char* kUploaded = "isUploaded=true\n";

TEST(UploadPauses, time_standsStillDuringThem) {
  EXPECT_EQ(timeWithPauses(5s, {}), 5s);
  EXPECT_EQ(timeWithPauses(5s, {{5s, 60s}}), 5s);
  EXPECT_EQ(timeWithPauses(6s, {{5s, 60s}}), 66s);
  EXPECT_EQ(timeWithPauses(1s, {{0s, 10s}}), 11s);
  EXPECT_EQ(timeWithPauses(6s, {{20s, 10s}, {5s, 10s}}), 16s);
  EXPECT_EQ(timeWithPauses(16s, {{20s, 10s}, {5s, 10s}}), 36s);
}

TEST(UploadPauses, overlappingOnes_countOnce) {
  EXPECT_EQ(timeWithPauses(6s, {{5s, 10s}, {10s, 10s}}), 21s);
  EXPECT_EQ(timeWithPauses(6s, {{5s, 30s}, {10s, 10s}}), 36s);
}

/// Uploads the files of a folder by a clock that the test is told.
class UploadingTest : public ::testing::Test {
 protected:
  std::string addFile(const std::string& name, std::size_t size, const std::string& state) const {
    const std::string path = folder_ / name;
    writeFile(path, std::string(size, 'x'));
    setICloudAttribute(path, state);
    return path;
  }
  UploadOutcome upload(const UploadPlan& plan) {
    return demo::upload(
        folder_.path(), plan,
        [this](std::chrono::nanoseconds until) {
          times_.push_back(until);
          return times_.size() != stopsAt_;
        },
        [this](const WaitingFile& file, std::size_t) {
          names_.push_back(file.path.filename());
          if (onUploaded_) {
            onUploaded_();
          }
        });
  }

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  /// Which wait is interrupted; 0 for none.
  std::size_t stopsAt_ = 0;
  std::function<void()> onUploaded_;
  std::vector<std::chrono::nanoseconds> times_;
  std::vector<std::string> names_;
};

TEST_F(UploadingTest, pendingFiles_leaveByPathWhenTheirBytesAreSent) {
  addFile("b/second.txt", 300, kPending);
  addFile("a first.txt", 100, kPending);
  addFile("c failed.txt", 200, "isUploaded=true\nuploadingError=No space.\n");
  addFile("there.txt", 900, kUploaded);
  addFile("local.txt", 900, "isUbiquitous=false\nisUploaded=false\n");
  const UploadOutcome outcome = upload({.bytesPerSecond = 100, .stuck = {}, .pauses = {{2s, 10s}}});
  EXPECT_THAT(names_, ElementsAre("a first.txt", "second.txt", "c failed.txt"));
  EXPECT_THAT(times_, ElementsAre(1s, 14s, 16s));
  EXPECT_EQ(outcome.left, 3u);
  EXPECT_EQ(outcome.stayed, 0u);
  EXPECT_FALSE(outcome.wasStopped);
  EXPECT_THAT(demo::waitingFiles(folder_.path()), IsEmpty());
}

TEST_F(UploadingTest, state_changesInNothingElse) {
  const std::string path =
      addFile("a.txt", 1, "sharedBy=Anna\nisUploaded=false\nisUploading=true\nisSyncPaused=true\n");
  const auto date = std::filesystem::last_write_time(path);
  upload({.bytesPerSecond = 1, .stuck = {}, .pauses = {}});
  EXPECT_EQ(iCloudAttribute(path), "sharedBy=Anna\nisUploaded=true\nisSyncPaused=true\n");
  EXPECT_EQ(std::filesystem::last_write_time(path), date);
}

TEST_F(UploadingTest, stuckFiles_stay) {
  const std::string stuck = addFile("Stuck.txt", 1000, kPending);
  addFile("Moves.txt", 100, kPending);
  const UploadOutcome outcome = upload({.bytesPerSecond = 100, .stuck = {"Stuck"}, .pauses = {}});
  EXPECT_THAT(times_, ElementsAre(1s));
  EXPECT_EQ(outcome.left, 1u);
  EXPECT_EQ(outcome.stayed, 1u);
  EXPECT_EQ(iCloudAttribute(stuck), kPending);
}

TEST_F(UploadingTest, stopped_leavesTheRestAsItWas) {
  addFile("a.txt", 100, kPending);
  const std::string second = addFile("b.txt", 100, kPending);
  stopsAt_ = 2;
  const UploadOutcome outcome = upload({.bytesPerSecond = 100, .stuck = {}, .pauses = {}});
  EXPECT_TRUE(outcome.wasStopped);
  EXPECT_EQ(outcome.left, 1u);
  EXPECT_EQ(outcome.stayed, 1u);
  EXPECT_EQ(iCloudAttribute(second), kPending);
}

TEST_F(UploadingTest, filesThatComeAndGoMeanwhile_areUploadedOrPassedOver) {
  addFile("a.txt", 100, kPending);
  const std::string removed = addFile("b.txt", 100, kPending);
  onUploaded_ = [&] {
    onUploaded_ = nullptr;
    std::filesystem::remove(removed);
    addFile("0 late.txt", 100, kPending);
  };
  const UploadOutcome outcome = upload({.bytesPerSecond = 100, .stuck = {}, .pauses = {}});
  EXPECT_THAT(names_, ElementsAre("a.txt", "0 late.txt"));
  EXPECT_EQ(outcome.left, 2u);
}

class UploadTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }
};

TEST_F(UploadTest, upload_demoMac_leavesNothingPending) {
  ASSERT_GT(report().at("metrics").at("pendingUploads"), 3);
  const ChildResult result = demo({"upload", root(), "--rate", "100000000"});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("Uploaded Library/Mobile Documents/com~apple~CloudDocs/"));
  EXPECT_THAT(result.out, HasSubstr("; 0 to go.\n"));
  EXPECT_THAT(result.out, HasSubstr(" files uploaded, 0 still pending.\n"));
  const nlohmann::json after = report();
  EXPECT_EQ(after.at("metrics").at("pendingUploads"), 0);
  EXPECT_FALSE(reasonsOf(after).contains("uploadError"));
  EXPECT_TRUE(reasonsOf(after).contains("unresolvedConflict"));
}

TEST_F(UploadTest, upload_stuckFile_staysPendingAndEndsAllTheSame) {
  const ChildResult result =
      demo({"upload", root(), "--rate", "100000000", "--stuck", "Invoice 2031", "--stuck", "Solutions 8"});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr(" uploaded, 2 still pending.\n"));
  EXPECT_EQ(report().at("metrics").at("pendingUploads"), 2);
}

TEST_F(UploadTest, upload_signal_endsItAndLeavesEveryStateWhole) {
  const TreeContent before = treeContent(root());
  // At this rate the first file would take days.
  const std::string script = R"("$0" upload "$1" --rate 0.01 & child=$!; )"
                             // It sleeps while it waits for its time or the signal. A shell that is not this program
                             // yet would not hear the signal.
                             R"(until grep -q '^Name:.cirrovane-demo' /proc/$child/status && )"
                             R"(grep -q '^State:.S' /proc/$child/status; do :; done; )"
                             R"(kill -INT $child; wait $child)";
  const ChildResult result = runProgram("/bin/sh", {"-c", script, CIRROVANE_BIN_DIR "/cirrovane-demo-mac", root()});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("Stopped. 0 files uploaded, "));
  EXPECT_EQ(treeContent(root()), before);
}

TEST_F(UploadTest, upload_wrongOptions_saysWhatWouldBeRight) {
  const TreeContent before = treeContent(root());
  for (const std::string rate : {"0", "-1", "fast", "1e9", "", "nan", "inf", "10 "}) {
    const ChildResult result = demo({"upload", root(), "--rate", rate});
    EXPECT_EQ(result.exitStatus, 2) << rate;
    EXPECT_THAT(result.err, HasSubstr("The rate is a number of bytes a second above zero")) << rate;
  }
  for (const std::string pause : {"5", "5:", ":5", "5:0", "-1:5", "a:b", "1:2:3"}) {
    const ChildResult result = demo({"upload", root(), "--pause", pause});
    EXPECT_EQ(result.exitStatus, 2) << pause;
    EXPECT_THAT(result.err, HasSubstr("A pause is START:LENGTH in seconds")) << pause;
  }
  EXPECT_EQ(demo({"upload", root(), "--stuck", ""}).exitStatus, 2);
  EXPECT_EQ(treeContent(root()), before);
}

TEST_F(UploadTest, upload_noDemoMac_refuses) {
  const ChildResult result = demo({"upload", folder_ / "nothing"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("is no demo Mac"));
}

}  // namespace
}  // namespace cirrovane::test
