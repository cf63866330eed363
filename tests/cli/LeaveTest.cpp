#include "tests/cli/HealthyMac.h"
#include "tests/cli/Watching.h"
#include "tests/platform/LoginService.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kPmset = "/usr/bin/pmset";
constexpr const char* kShutdown = "/sbin/shutdown";
constexpr const char* kCaffeinate = "/usr/bin/caffeinate";

/// A Mac whose power commands write down that they were called, and whose watchlist is one folder.
class LeaveTest : public testing::Test {
 protected:
  LeaveTest() {
    mac_.setCommand(kPmset, "echo \"pmset $*\" >> " + quoted(log()));
    mac_.setCommand(kShutdown, "echo \"shutdown $*\" >> " + quoted(log()));
    mac_.setCommand(kCaffeinate, "echo \"caffeinate $*\" >> " + quoted(log()) + "\nexec sleep 600");
    mac_.addFile("Work/clean", "isUploaded=true");
    EXPECT_EQ(mac_.run({"watchlist", "add", mac_.iCloudDrive() + "/Work"}).exitStatus, 0);
  }

  static std::string quoted(const std::string& text) { return "'" + text + "'"; }
  std::string log() const { return mac_ / "power.log"; }
  /// What the machine was asked for.
  std::string asked() const { return std::filesystem::exists(log()) ? readFile(log()) : ""; }
  std::string addPending() const { return mac_.addFile("Work/pending", "isUploaded=false"); }
  ChildResult leave(std::vector<std::string> more) const {
    more.insert(more.begin(), "leave");
    return mac_.run(more);
  }
  std::vector<std::string> arguments(std::vector<std::string> more) const {
    more.insert(more.begin(), {"--mac-root", mac_.path(), "leave"});
    return more;
  }
  /// The process that the machine is kept awake for; fails the test where there comes none.
  int awakeFor() const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (asked().find('\n') == std::string::npos) {
      if (std::chrono::steady_clock::now() > deadline) {
        ADD_FAILURE() << "The machine is not kept awake.";
        return 0;
      }
      std::this_thread::yield();
    }
    return std::stoi(asked().substr(asked().rfind(' ') + 1));
  }

  const HealthyMac mac_;
};

TEST_F(LeaveTest, safe_sleepsOnceAndPrintsTheReport) {
  const ChildResult result = leave({"--then", "sleep"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, StartsWith("SAFE TO CLOSE"));
  EXPECT_THAT(asked(), HasSubstr("pmset sleepnow\n"));
  EXPECT_THAT(asked(), Not(HasSubstr("shutdown")));
}

TEST_F(LeaveTest, safe_shutsDownWhereThatIsWished) {
  EXPECT_EQ(leave({"--then", "shutdown"}).exitStatus, 0);
  EXPECT_THAT(asked(), HasSubstr("shutdown -h now\n"));
}

TEST_F(LeaveTest, safe_withoutAnythingToDo_isDone) {
  EXPECT_EQ(leave({}).exitStatus, 0);
  EXPECT_EQ(leave({"--then", "nothing"}).exitStatus, 0);
  EXPECT_THAT(asked(), Not(HasSubstr("pmset")));
}

TEST_F(LeaveTest, json_isTheLastReport) {
  const ChildResult result = leave({"--then", "sleep", "--json"});
  EXPECT_EQ(parsed(result.out)["safeToClose"], true);
}

TEST_F(LeaveTest, unknownAct_isWrongUsage) {
  EXPECT_EQ(leave({"--then", "fly"}).exitStatus, 2);
  EXPECT_EQ(leave({"--timeout", "nan"}).exitStatus, 2);
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(LeaveTest, timeThatRunsOut_doesNothing) {
  addPending();
  const ChildResult result = leave({"--then", "sleep", "--timeout", "0.2", "--json"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(parsed(result.out)["safeToClose"], false);
  EXPECT_THAT(asked(), Not(HasSubstr("pmset")));
}

TEST_F(LeaveTest, noTimeAtAll_isEnoughWhereItIsSafe) {
  EXPECT_EQ(leave({"--then", "sleep", "--timeout", "0"}).exitStatus, 0);
  EXPECT_THAT(asked(), HasSubstr("pmset sleepnow"));
}

TEST_F(LeaveTest, fileThatIsUploadedMeanwhile_isWaitedForAwake) {
  const std::string path = addPending();
  Watching program(arguments({"--then", "sleep"}));
  EXPECT_GT(awakeFor(), 0);
  EXPECT_THAT(asked(), Not(HasSubstr("pmset")));
  setICloudAttribute(path, "isUploaded=true");
  EXPECT_EQ(program.exitStatus(), 0);
  EXPECT_THAT(asked(), HasSubstr("pmset sleepnow"));
}

TEST_F(LeaveTest, signal_endsTheWaitAndDoesNothing) {
  const std::string path = addPending();
  for (const int signal : {SIGINT, SIGTERM}) {
    std::filesystem::remove(log());
    Watching program(arguments({"--then", "sleep"}));
    EXPECT_GT(awakeFor(), 0);
    program.signal(signal);
    EXPECT_EQ(program.exitStatus(), 1);
  }
  setICloudAttribute(path, "isUploaded=true");
  EXPECT_THAT(asked(), Not(HasSubstr("pmset")));
}

TEST_F(LeaveTest, machineThatRefuses_isStatus3WithTheReason) {
  mac_.removeCommand(kPmset);
  const ChildResult result = leave({"--then", "sleep"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.out, StartsWith("SAFE TO CLOSE"));
  EXPECT_THAT(result.err, HasSubstr("It is safe, but the machine does not leave: This Mac has no /usr/bin/pmset."));
}

TEST_F(LeaveTest, machineThatCannotBeKeptAwake_isSaidAndChangesNothingElse) {
  mac_.removeCommand(kCaffeinate);
  addPending();
  const ChildResult result = leave({"--then", "sleep", "--timeout", "0.2"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, HasSubstr("The machine may fall asleep meanwhile. This Mac has no /usr/bin/caffeinate."));
}

TEST_F(LeaveTest, lowBattery_isNotDrawnOn) {
  nlohmann::json facts = HealthyMac::facts();
  facts["powerSources"] = {{{"Current Capacity", 29}, {"Max Capacity", 100}, {"Power Source State", "Battery Power"}}};
  mac_.describe(facts);
  addPending();
  const ChildResult result = leave({"--timeout", "0.2"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.err, HasSubstr("The machine may fall asleep meanwhile. The battery is below 30%."));
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(LeaveTest, gapThatWaitingCannotClose_endsTheWaitAndIsNamed) {
  writeFile(mac_.iCloudDrive() + "/Work/.env");
  const ChildResult result = leave({"--then", "sleep"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.out, StartsWith("SAFE TO CLOSE"));
  EXPECT_THAT(result.err, HasSubstr(".env"));
  EXPECT_THAT(asked(), Not(HasSubstr("pmset")));
}

/// The machine itself, with a home folder and a login service of the test's own.
class LeaveOnTheHost : public LeaveTest {
 protected:
  std::map<std::string, std::string> environment() const {
    const std::string home = mac_ / "Users/demo";
    return {{"HOME", home},
            {"XDG_DATA_HOME", home + "/Library/Application Support"},
            {"XDG_CONFIG_HOME", home + "/Library/Preferences"},
            {"DBUS_SYSTEM_BUS_ADDRESS", bus_.address()}};
  }

  const OwnSystemBus bus_;
  LoginService service_;
};

TEST_F(LeaveOnTheHost, safe_suspendsOnceByLogind) {
  Watching program(std::vector<std::string>{"leave", "--then", "sleep"}, environment());
  EXPECT_EQ(program.exitStatus(), 0);
  service_.settle();
  int suspends = 0;
  for (const std::string& line : service_.heard()) {
    suspends += line.starts_with("Suspend") ? 1 : 0;
  }
  EXPECT_EQ(suspends, 1);
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(LeaveOnTheHost, crashWhileWaiting_leavesNoLock) {
  addPending();
  Watching program(std::vector<std::string>{"leave", "--then", "sleep"}, environment());
  EXPECT_EQ(service_.next(), "took idle Cirrovane Waiting until it is safe to leave block");
  program.signal(SIGKILL);
  EXPECT_EQ(service_.next(), "released idle");
}

TEST_F(LeaveOnTheHost, denied_isStatus3) {
  service_.answer("Suspend", "denied");
  Watching program(std::vector<std::string>{"leave", "--then", "sleep"}, environment());
  EXPECT_EQ(program.exitStatus(), 3);
  EXPECT_THAT(program.errors(), HasSubstr("It is safe, but the machine does not leave: "));
}

TEST_F(LeaveOnTheHost, machineOfAnotherFolder_neverReachesLogind) {
  Watching program(arguments({"--then", "sleep"}), environment());
  EXPECT_EQ(program.exitStatus(), 0);
  service_.settle();
  for (const std::string& line : service_.heard()) {
    EXPECT_EQ(line, "ready");
  }
}

}  // namespace
}  // namespace cirrovane::test
