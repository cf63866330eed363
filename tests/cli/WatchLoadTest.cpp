#include "tests/cli/Watching.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using std::chrono::steady_clock;
using testing::IsEmpty;

constexpr const char* kOverflow = "More changed at once than the system can tell.";
constexpr const char* kNoMoreFolders = "The system watches no more folders (fs.inotify.max_user_watches).";

/// Whether the tests may take minutes.
bool isLong() {
  return std::getenv("CIRROVANE_LONG_LOAD") != nullptr;
}

/// How many events the system keeps for a program that does not read them.
std::size_t queueLength() {
  std::size_t length = 0;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> length;
  return length;
}

/// How many files there are, and how many of them wait for their upload.
struct Counts {
  std::int64_t files = 0;
  std::int64_t pending = 0;
};

/// Knows what was true when, and holds against that what was said.
class Truth {
 public:
  explicit Truth(Counts first) : counts_(first) {}

  const Counts& counts() const { return counts_; }
  /// Makes a change. While that takes, both what was and what comes is true.
  void change(Counts by, const std::function<void()>& make) {
    const std::size_t began = now();
    make();
    const std::size_t ended = now();
    reach(ended);
    counts_ = {counts_.files + by.files, counts_.pending + by.pending};
    for (std::size_t moment = began; moment <= ended; ++moment) {
      moments_[moment].add(counts_);
    }
  }

  /// What was said to be live though it had not been so for over a second.
  std::vector<std::string> untruths(const std::vector<HeardLine>& lines) {
    const std::size_t end = now();
    reach(end);
    std::vector<std::string> found;
    for (std::size_t index = 0; index < lines.size(); ++index) {
      const json line = json::parse(lines[index].text);
      const std::size_t until = index + 1 < lines.size() ? momentOf(lines[index + 1].at) : end;
      for (std::size_t moment = momentOf(lines[index].at); line["liveness"] == "live" && moment < until; ++moment) {
        if (!holds(line, moment)) {
          found.push_back(std::to_string(moment * kMoment.count()) + " ms: " + lines[index].text);
          break;
        }
      }
    }
    return found;
  }

 private:
  /// What was true in one moment. Files come and go one by one, so that all between two numbers was true as well.
  struct Range {
    explicit Range(Counts counts) : least(counts), most(counts) {}
    void add(Counts counts) {
      least = {std::min(least.files, counts.files), std::min(least.pending, counts.pending)};
      most = {std::max(most.files, counts.files), std::max(most.pending, counts.pending)};
    }
    Counts least;
    Counts most;
  };

  static constexpr std::chrono::milliseconds kMoment{10};
  /// A second, and what two processes and a pipe on a busy machine may take to bring a line here.
  static constexpr std::chrono::milliseconds kAllowed{1400};

  std::size_t momentOf(steady_clock::time_point time) const {
    return time < start_ ? 0 : static_cast<std::size_t>((time - start_) / kMoment);
  }
  std::size_t now() {
    const std::size_t moment = momentOf(steady_clock::now());
    reach(moment);
    return moment;
  }
  void reach(std::size_t moment) {
    if (moments_.size() <= moment) {
      moments_.resize(moment + 1, Range(counts_));
    }
  }

  bool holds(const json& line, std::size_t moment) const {
    constexpr auto kWindow = static_cast<std::size_t>(kAllowed / kMoment);
    Range range = moments_[moment];
    for (std::size_t before = moment > kWindow ? moment - kWindow : 0; before < moment; ++before) {
      range.add(moments_[before].least);
      range.add(moments_[before].most);
    }
    const std::int64_t files = line["totalFiles"];
    const std::int64_t pending = line["pendingUploads"];
    return files >= range.least.files && files <= range.most.files && pending >= range.least.pending &&
           pending <= range.most.pending && !(line["safeToClose"] == true && range.least.pending > 0);
  }

  const steady_clock::time_point start_ = steady_clock::now();
  Counts counts_;
  std::vector<Range> moments_;
};

class WatchUnderLoad : public testing::Test {
 protected:
  std::vector<std::string> arguments() const { return {"--mac-root", mac_.path(), "watch", "--json"}; }
  json checked() const { return verdictOfReport(parsed(ctl({"--mac-root", mac_.path(), "check", "--json"}).out)); }
  /// Waits for a live line that says what a scan says.
  json settled(Watching& watching) const {
    const json expected = checked();
    return watching.nextWith(
        [&](const json& line) { return line["liveness"] == "live" && verdictOf(line) == expected; });
  }
  std::string at(const std::string& name) const { return mac_.iCloudDrive() + "/" + name; }
  static void make(const std::string& path, const char* state = nullptr) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    ASSERT_TRUE(file.isOpen());
    if (state != nullptr) {
      ASSERT_EQ(fsetxattr(file.get(), "user.icloud", state, std::char_traits<char>::length(state), 0), 0);
    }
  }

  const MacTree mac_;
};

TEST_F(WatchUnderLoad, moreEventsThanTheSystemKeeps_areALossAndThenTheTruth) {
  mac_.addFile("letter");
  mac_.addFile("other");
  makeFolder(at("many"));
  Watching watching(arguments());
  EXPECT_EQ(watching.next()["safeToClose"], true);
  watching.signal(SIGSTOP);
  const std::size_t count = queueLength() + 1000;
  // The same event twice in a row is queued once.
  for (std::size_t index = 0; index < count; ++index) {
    chmod(at(index % 2 == 0 ? "letter" : "other").c_str(), 0600);
  }
  mac_.addFile("many/last", "isUploaded=false");
  watching.signal(SIGCONT);
  const json lost = watching.nextWith([](const json& line) { return line["liveness"] != "live"; });
  EXPECT_EQ(lost["liveness"], "catchingUp");
  EXPECT_EQ(lost["reason"], kOverflow);
  const json line = settled(watching);
  EXPECT_EQ(line["totalFiles"], 3);
  EXPECT_EQ(line["safeToClose"], false);
  // The watch goes on.
  setICloudAttribute(at("many/last"), "isUploaded=true");
  EXPECT_EQ(settled(watching)["safeToClose"], true);
}

TEST_F(WatchUnderLoad, processThatStoodStill_tellsTheTruthWithinASecondOfGoingOn) {
  // Long enough for every alarm of a second to be overdue.
  const std::chrono::milliseconds still = isLong() ? std::chrono::minutes(1) : std::chrono::milliseconds(1500);
  mac_.addFile("letter");
  mac_.addFile("below/another");
  Watching watching(arguments());
  watching.next();
  watching.signal(SIGSTOP);
  const auto began = steady_clock::now();
  setICloudAttribute(at("letter"), "isUploaded=false");
  mac_.addFile("below/third");
  std::filesystem::rename(at("below"), at("elsewhere"));
  std::this_thread::sleep_until(began + still);
  const auto goesOn = steady_clock::now();
  watching.signal(SIGCONT);
  const json line = watching.nextWith([](const json& said) { return said["safeToClose"] == false; });
  EXPECT_LT(steady_clock::now() - goesOn, std::chrono::seconds(1));
  EXPECT_FALSE(line.is_null());
  if (verdictOf(line) != checked()) {
    EXPECT_EQ(settled(watching)["totalFiles"], 3);
  }
  mac_.addFile("elsewhere/fourth");
  EXPECT_EQ(settled(watching)["totalFiles"], 4);
}

TEST_F(WatchUnderLoad, manyFilesUnpackedAndRemoved_areNeverSaidToBeLiveAndOtherwise) {
  const std::int64_t folders = isLong() ? 500 : 20;
  constexpr std::int64_t kFilesInEach = 200;
  constexpr std::int64_t kPending = 77;
  mac_.addFile("letter");
  Watching watching(arguments());
  watching.next();
  Truth truth({1, 0});
  const auto pathOf = [this](std::int64_t folder) { return at("unpacked/folder-" + std::to_string(folder)); };
  for (std::int64_t folder = 0; folder < folders; ++folder) {
    makeFolder(pathOf(folder));
    for (std::int64_t file = 0; file < kFilesInEach; ++file) {
      const bool isPending = file == kPending;
      truth.change({1, isPending ? 1 : 0}, [&] {
        make(pathOf(folder) + "/" + std::to_string(file), isPending ? "isUploaded=false" : "isUploaded=true");
      });
    }
  }
  const json unpacked = settled(watching);
  EXPECT_EQ(unpacked["totalFiles"], truth.counts().files);
  EXPECT_EQ(unpacked["pendingUploads"], folders);
  for (std::int64_t folder = 0; folder < folders; ++folder) {
    for (std::int64_t file = 0; file < kFilesInEach; ++file) {
      truth.change({-1, file == kPending ? -1 : 0},
                   [&] { std::filesystem::remove(pathOf(folder) + "/" + std::to_string(file)); });
    }
    std::filesystem::remove(pathOf(folder));
  }
  const json removed = settled(watching);
  EXPECT_EQ(removed["totalFiles"], 1);
  EXPECT_EQ(removed["safeToClose"], true);
  EXPECT_THAT(truth.untruths(watching.heard()), IsEmpty());
}

TEST_F(WatchUnderLoad, savesAndUploadsThroughout_areEachSaidInTime) {
  const auto end = steady_clock::now() + (isLong() ? std::chrono::seconds(60) : std::chrono::seconds(2));
  constexpr std::size_t kFiles = 50;
  std::vector<std::string> files;
  for (std::size_t file = 0; file < kFiles; ++file) {
    files.push_back(mac_.addFile("folder-" + std::to_string(file % 7) + "/" + std::to_string(file)));
  }
  Watching watching(arguments());
  watching.next();
  Truth truth({kFiles, 0});
  std::vector<bool> isPending(kFiles, false);
  const auto turn = [&](std::size_t file) {
    truth.change({0, isPending[file] ? -1 : 1},
                 [&] { setICloudAttribute(files[file], isPending[file] ? "isUploaded=true" : "isUploaded=false"); });
    isPending[file] = !isPending[file];
  };
  std::minstd_rand random(1);
  for (auto next = steady_clock::now(); next < end; next += std::chrono::milliseconds(1)) {
    std::this_thread::sleep_until(next);
    turn(random() % kFiles);
  }
  for (std::size_t file = 0; file < kFiles; ++file) {
    if (isPending[file]) {
      turn(file);
    }
  }
  EXPECT_EQ(settled(watching)["safeToClose"], true);
  EXPECT_THAT(truth.untruths(watching.heard()), IsEmpty());
}

TEST_F(WatchUnderLoad, tooFewWatches_areSaidAndMadeUpForByScans) {
  // In a user namespace of its own the program has a limit of its own, which the shell beside it can raise.
  constexpr const char* kScript =
      "echo 12 > /proc/sys/user/max_inotify_watches; \"$@\" & program=$!; "
      "while read command; do eval \"$command\"; done < \"$GATE\"; wait $program";
  if (runProgram("/usr/bin/unshare", {"--user", "--map-root-user", "/bin/true"}).exitStatus != 0) {
    // Where the system gives no such rights, the watch's own tests have calls that refuse.
    EXPECT_NE(geteuid(), 0U);
    return;
  }
  for (int folder = 0; folder < 40; ++folder) {
    mac_.addFile("folder-" + std::to_string(folder) + "/letter");
  }
  const std::string gate = mac_ / "gate";
  ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
  std::vector<std::string> command = {"--user", "--map-root-user", "/bin/sh", "-c", kScript, "sh", kProgram};
  for (const std::string& argument : arguments()) {
    command.push_back(argument);
  }
  command.insert(command.end(), {"--timeout", "120"});
  Watching watching("/usr/bin/unshare", command, {{"GATE", gate}});
  const json first = watching.next();
  EXPECT_EQ(first["liveness"], "notLive");
  EXPECT_EQ(first["reason"], kNoMoreFolders);
  EXPECT_EQ(verdictOf(first), checked());
  // Some folder's change is not told. The scans find it, and the watch says so all the while.
  for (int folder = 0; folder < 40; ++folder) {
    mac_.addFile("folder-" + std::to_string(folder) + "/pending", "isUploaded=false");
  }
  const json found = watching.nextWith([](const json& line) { return line["pendingUploads"] == 40; });
  EXPECT_EQ(verdictOf(found), checked());
  EXPECT_EQ(found["reason"], kNoMoreFolders);
  std::ofstream shell(gate);
  if (isLong()) {
    shell << "echo 10000 > /proc/sys/user/max_inotify_watches" << std::endl;
    const json again = watching.nextWith([](const json& line) { return line["liveness"] == "live"; });
    EXPECT_EQ(verdictOf(again), checked());
    for (int folder = 0; folder < 40; ++folder) {
      setICloudAttribute(at("folder-" + std::to_string(folder) + "/pending"), "isUploaded=true");
    }
    EXPECT_EQ(settled(watching)["safeToClose"], true);
  }
  shell << "kill $program" << std::endl;
  shell.close();
  EXPECT_EQ(watching.exitStatus(), isLong() ? 0 : 1);
}

}  // namespace
}  // namespace cirrovane::test
