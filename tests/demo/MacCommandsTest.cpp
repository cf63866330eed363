#include "tests/demo/DemoMacFixture.h"

#include <cstdint>
#include <filesystem>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::AllOf;
using ::testing::Gt;
using ::testing::Lt;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

constexpr const char* kNewProcesses =
    "# The processes of this Mac, as pgrep finds them: number and name.\n"
    "412 Finder\n"
    "437 cloudd\n"
    "441 bird\n"
    "463 fileproviderd\n";

constexpr const char* kDefaultRoute =
    "   route to: default\n"
    "destination: default\n"
    "       mask: default\n"
    "    gateway: 192.168.1.1\n"
    "  interface: en0\n"
    "      flags: <UP,GATEWAY,DONE,STATIC,PRCLONING,GLOBAL>\n"
    " recvpipe  sendpipe  ssthresh  rtt,msec    rttvar  hopcount      mtu     expire\n"
    "       0         0         0         0         0         0      1500         0 \n";

constexpr const char* kAddresses =
    "name: www.apple.com\n"
    "ipv6_address: 2a02:26f0::1\n"
    "\n"
    "name: www.apple.com\n"
    "ip_address: 23.1.2.3\n"
    "\n";

class MacCommandsTest : public DemoMacTest {
 protected:
  void SetUp() override { succeed("create"); }

  void takeOffNetwork() const { writeFile(root() + "/network.txt", "off\n"); }

  std::string powerLog() const { return root() + "/var/log/power.log"; }

  void expectAnswer(const ChildResult& result, int exitStatus, const std::string& out,
                    const std::string& err = "") const {
    EXPECT_EQ(result.exitStatus, exitStatus);
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, err);
  }

  void expectMisuse(const std::string& path, const std::vector<std::string>& arguments, int exitStatus) const {
    const ChildResult result = onMac(path, arguments);
    EXPECT_EQ(result.exitStatus, exitStatus) << path;
    EXPECT_EQ(result.out, "") << path;
    EXPECT_THAT(result.err, StartsWith("usage: " + std::filesystem::path(path).filename().native() + " ")) << path;
  }

  /// One answer of each command that looks into the root, with a text that is on this Mac only.
  void expectItsOwnAnswers(const std::string& where, const ChildOptions& options = {}) const {
    const auto run = [&](const std::string& path, const std::vector<std::string>& arguments) {
      return runProgram(where + path, arguments, options);
    };
    expectAnswer(run("/usr/bin/pgrep", {"-x", "bird"}), 0, "7\n");
    expectAnswer(run("/usr/sbin/route", {"-n", "get", "default"}), 1, "",
                 "route: writing to routing socket: not in table\n");
    expectAnswer(run("/usr/sbin/scutil", {"-r", "www.apple.com"}), 0, "Not Reachable\n");
    expectAnswer(run("/usr/bin/dscacheutil", {"-q", "host", "-a", "name", "www.apple.com"}), 0, "");
    expectAnswer(run("/usr/bin/which", {"/opt/homebrew/bin/jq"}), 0, "/opt/homebrew/bin/jq\n");
    EXPECT_EQ(run("/opt/homebrew/bin/brew", {"install", "lnav"}).exitStatus, 1);
    EXPECT_EQ(run("/opt/homebrew/bin/brew", {"install", "jq"}).exitStatus, 0);
  }

  void makeDistinct(const std::string& where) const {
    writeFile(where + "/processes.txt", "7 bird\n");
    writeFile(where + "/network.txt", "off\n");
  }
};

TEST_F(MacCommandsTest, create_newFolder_writesThemForEverybodyToRun) {
  for (const std::string path :
       {"/usr/bin/pgrep", "/usr/sbin/route", "/usr/sbin/scutil", "/usr/bin/dscacheutil", "/usr/sbin/sysctl",
        "/usr/bin/which", "/usr/bin/top", "/usr/bin/vm_stat", "/usr/bin/pmset", "/usr/bin/caffeinate", "/sbin/shutdown",
        "/opt/homebrew/bin/osx-cpu-temp", "/opt/homebrew/bin/brew", "/opt/homebrew/bin/jq"}) {
    EXPECT_TRUE(std::filesystem::is_regular_file(root() + path)) << path;
    EXPECT_EQ(permissions(root() + path) & 0700u, 0700u) << path;
    EXPECT_THAT(readFile(root() + path), StartsWith("#!/bin/sh\n")) << path;
  }
}

TEST_F(MacCommandsTest, create_newFolder_writesStateThatAPersonUnderstands) {
  EXPECT_EQ(readFile(root() + "/processes.txt"), kNewProcesses);
  EXPECT_EQ(readFile(root() + "/network.txt"), "on\n");
}

TEST_F(MacCommandsTest, settleAndUnsettle_commandsAndState_leaveThemAlone) {
  writeFile(root() + "/processes.txt", "7 bird\n");
  takeOffNetwork();
  const std::string pgrep = readFile(root() + "/usr/bin/pgrep");
  for (const std::string command : {"settle", "unsettle"}) {
    succeed(command);
    expectItsOwnAnswers(root());
    EXPECT_EQ(readFile(root() + "/usr/bin/pgrep"), pgrep);
    EXPECT_FALSE(iCloudAttribute(root() + "/usr/bin/pgrep"));
  }
}

TEST_F(MacCommandsTest, pgrep_newMac_findsWhatRuns) {
  for (const std::string name : {"bird", "cloudd", "fileproviderd", "Finder"}) {
    const ChildResult result = onMac("/usr/bin/pgrep", {"-x", name});
    EXPECT_EQ(result.exitStatus, 0) << name;
    EXPECT_THAT(result.out, MatchesRegex("[1-9][0-9]*\n")) << name;
    EXPECT_EQ(result.err, "") << name;
  }
}

TEST_F(MacCommandsTest, pgrep_nothingOfThatWholeName_findsNothing) {
  for (const std::string name : {"smartctl", "bir", "birds", "Bird", "b.rd", "*", "#", "412", "sh"}) {
    expectAnswer(onMac("/usr/bin/pgrep", {"-x", name}), 1, "");
  }
}

TEST_F(MacCommandsTest, pgrep_listWrittenByAPerson_findsEachOfItsProcesses) {
  writeFile(root() + "/processes.txt",
            "\n# 9 bird\nbird\nx bird\n  12\t bird \n-3 bird\n13 a\\b\n14 Google Chrome\n15\n16 bird");
  expectAnswer(onMac("/usr/bin/pgrep", {"-x", "bird"}), 0, "12\n16\n");
  expectAnswer(onMac("/usr/bin/pgrep", {"-x", "a\\b"}), 0, "13\n");
  expectAnswer(onMac("/usr/bin/pgrep", {"-x", "Google Chrome"}), 0, "14\n");
}

TEST_F(MacCommandsTest, pgrep_noList_findsNothing) {
  std::filesystem::remove(root() + "/processes.txt");
  expectAnswer(onMac("/usr/bin/pgrep", {"-x", "bird"}), 1, "");
}

TEST_F(MacCommandsTest, route_networkOn_showsTheWayOut) {
  expectAnswer(onMac("/usr/sbin/route", {"-n", "get", "default"}), 0, kDefaultRoute);
}

TEST_F(MacCommandsTest, route_networkOff_fails) {
  takeOffNetwork();
  expectAnswer(onMac("/usr/sbin/route", {"-n", "get", "default"}), 1, "",
               "route: writing to routing socket: not in table\n");
}

TEST_F(MacCommandsTest, scutil_networkOnAndOff_succeedsEitherWay) {
  expectAnswer(onMac("/usr/sbin/scutil", {"-r", "www.icloud.com"}), 0, "Reachable\n");
  takeOffNetwork();
  expectAnswer(onMac("/usr/sbin/scutil", {"-r", "www.icloud.com"}), 0, "Not Reachable\n");
}

TEST_F(MacCommandsTest, dscacheutil_networkOnAndOff_resolvesOrStaysSilent) {
  expectAnswer(onMac("/usr/bin/dscacheutil", {"-q", "host", "-a", "name", "www.apple.com"}), 0, kAddresses);
  takeOffNetwork();
  expectAnswer(onMac("/usr/bin/dscacheutil", {"-q", "host", "-a", "name", "www.apple.com"}), 0, "");
}

TEST_F(MacCommandsTest, dscacheutil_oddName_isRepeatedAsItIs) {
  EXPECT_THAT(onMac("/usr/bin/dscacheutil", {"-q", "host", "-a", "name", "%s\\n*"}).out,
              StartsWith("name: %s\\n*\nipv6_address: "));
}

TEST_F(MacCommandsTest, network_noStateFile_isOn) {
  std::filesystem::remove(root() + "/network.txt");
  expectAnswer(onMac("/usr/sbin/scutil", {"-r", "www.icloud.com"}, {{}, {{"network", "off"}}}), 0, "Reachable\n");
  expectAnswer(onMac("/usr/sbin/route", {"-n", "get", "default"}), 0, kDefaultRoute);
  expectAnswer(onMac("/usr/bin/dscacheutil", {"-q", "host", "-a", "name", "www.apple.com"}), 0, kAddresses);
}

TEST_F(MacCommandsTest, network_offWithoutLineBreak_isOff) {
  writeFile(root() + "/network.txt", "off");
  expectAnswer(onMac("/usr/sbin/scutil", {"-r", "www.icloud.com"}), 0, "Not Reachable\n");
}

TEST_F(MacCommandsTest, sysctl_swapUsage_prints) {
  expectAnswer(onMac("/usr/sbin/sysctl", {"vm.swapusage"}), 0,
               "vm.swapusage: total = 2048.00M  used = 1017.50M  free = 1030.50M  (encrypted)\n");
}

TEST_F(MacCommandsTest, sysctl_unknownName_saysSo) {
  expectAnswer(onMac("/usr/sbin/sysctl", {"hw.cheese"}), 1, "", "sysctl: unknown oid 'hw.cheese'\n");
}

TEST_F(MacCommandsTest, which_commandInPath_printsItsPathOnTheMac) {
  expectAnswer(onMac("/usr/bin/which", {"pgrep"}), 0, "/usr/bin/pgrep\n");
  expectAnswer(onMac("/usr/bin/which", {"jq"}, {{}, {{"PATH", ":.:bin:/a b:/opt/homebrew/bin:/usr/bin"}}}), 0,
               "/opt/homebrew/bin/jq\n");
  expectAnswer(onMac("/usr/bin/which", {"route", "pgrep"}), 0, "/usr/sbin/route\n/usr/bin/pgrep\n");
}

TEST_F(MacCommandsTest, which_firstOfTwo_wins) {
  std::filesystem::create_directory(root() + "/usr/local");
  std::filesystem::copy(root() + "/usr/bin", root() + "/usr/local/bin");
  expectAnswer(onMac("/usr/bin/which", {"top"}, {{}, {{"PATH", "/usr/local/bin:/usr/bin"}}}), 0,
               "/usr/local/bin/top\n");
}

TEST_F(MacCommandsTest, which_notOnTheMac_findsNothing) {
  writeFile(root() + "/usr/bin/plain", "no program");
  makeFolder(root() + "/usr/bin/folder");
  for (const std::string name : {"sh", "jq", "plain", "folder", "", "*", "../bin/sh"}) {
    expectAnswer(onMac("/usr/bin/which", {name}), 1, "");
  }
  expectAnswer(onMac("/usr/bin/which", {"sh", "top"}), 1, "/usr/bin/top\n");
}

TEST_F(MacCommandsTest, which_path_testsThatFile) {
  expectAnswer(onMac("/usr/bin/which", {"/opt/homebrew/bin/jq"}), 0, "/opt/homebrew/bin/jq\n");
  expectAnswer(onMac("/usr/bin/which", {"/bin/sh"}), 1, "");
  expectAnswer(onMac("/usr/bin/which", {"bin/top"}, {root() + "/usr", {}}), 0, "bin/top\n");
}

TEST_F(MacCommandsTest, top_oneSample_readsAsAMacs) {
  const ChildResult result = onMac("/usr/bin/top", {"-l", "1", "-n", "0"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  const std::regex sample(
      "Processes: [0-9]+ total, [0-9]+ running, [0-9]+ sleeping, [0-9]+ threads \n"
      "[0-9]{4}/[0-9]{2}/[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\n"
      "Load Avg: [0-9.]+, [0-9.]+, [0-9.]+ \n"
      "CPU usage: 12\\.41% user, 7\\.16% sys, 80\\.43% idle \n"
      "SharedLibs: .*\nMemRegions: .*\nPhysMem: .*\nVM: .*\nNetworks: .*\nDisks: .*\n"
      "\nPID +COMMAND .*\n");
  EXPECT_TRUE(std::regex_match(result.out, sample)) << result.out;
}

TEST_F(MacCommandsTest, vmStat_asked_countsPagesThatFitTheMemory) {
  const ChildResult result = onMac("/usr/bin/vm_stat", {});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.err, "");
  std::istringstream lines(result.out);
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, "Mach Virtual Memory Statistics: (page size of 16384 bytes)");
  std::map<std::string, std::uint64_t> bytes;
  while (std::getline(lines, line)) {
    EXPECT_EQ(line.size(), 48u) << line;
    EXPECT_EQ(line.back(), '.') << line;
    bytes[line.substr(0, line.find(':'))] = std::stoull(line.substr(30)) * 16384;
  }
  EXPECT_EQ(bytes.size(), 22u);
  const std::uint64_t used =
      bytes.at("Pages active") + bytes.at("Pages wired down") + bytes.at("Pages occupied by compressor");
  EXPECT_THAT(used, AllOf(Gt(10'500'000'000u), Lt(11'500'000'000u)));
  const std::uint64_t all = used + bytes.at("Pages free") + bytes.at("Pages inactive") + bytes.at("Pages speculative");
  EXPECT_THAT(all, AllOf(Gt(std::uint64_t{15} << 30), Lt(std::uint64_t{16} << 30)));
  EXPECT_EQ(bytes.at("File-backed pages") + bytes.at("Anonymous pages"),
            bytes.at("Pages active") + bytes.at("Pages inactive") + bytes.at("Pages speculative"));
}

TEST_F(MacCommandsTest, osxCPUTemp_asked_printsDegrees) {
  expectAnswer(onMac("/opt/homebrew/bin/osx-cpu-temp", {}), 0, "61.8\u00b0C\n");
}

TEST_F(MacCommandsTest, powerCommands_eachCall_isALineInTheLog) {
  expectAnswer(onMac("/usr/bin/pmset", {"sleepnow"}), 0, "");
  expectAnswer(onMac("/sbin/shutdown", {"-h", "now"}), 0, "");
  expectAnswer(onMac("/usr/bin/pmset", {"sleepnow"}), 0, "");
  EXPECT_EQ(readFile(powerLog()), "pmset sleepnow\nshutdown -h now\npmset sleepnow\n");
}

TEST_F(MacCommandsTest, caffeinate_runsUntilTheProcessEnds) {
  // Whoever reads a fifo waits until something is written.
  const ChildResult result =
      runProgram("/bin/sh", {"-c",
                             "mkdir -p \"$1/var/log\" && mkfifo \"$1/go\" \"$1/var/log/power.log\" || exit;"
                             " read -r word <\"$1/go\" & \"$1/usr/bin/caffeinate\" -i -w $! &"
                             " read -r line <\"$1/var/log/power.log\"; echo \"$line\";"
                             " kill -0 $! && echo awake; echo >\"$1/go\"; wait $! && echo over",
                             "sh", root()});
  EXPECT_THAT(result.out, MatchesRegex("caffeinate -i -w [0-9]+\nawake\nover\n"));
}

TEST_F(MacCommandsTest, create_anew_emptiesThePowerLog) {
  expectAnswer(onMac("/usr/bin/pmset", {"sleepnow"}), 0, "");
  succeed("create");
  EXPECT_FALSE(exists(powerLog()));
}

TEST_F(MacCommandsTest, wrongUsage_anyCommand_saysWhatIsRight) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, {"-x"}, {"-x", ""}, {"bird"}, {"-f", "bird"}, {"-x", "bird", "cloudd"}}) {
    expectMisuse("/usr/bin/pgrep", arguments, 2);
  }
  expectMisuse("/usr/sbin/route", {"get", "default"}, 64);
  expectMisuse("/usr/sbin/scutil", {"-r"}, 64);
  expectMisuse("/usr/bin/dscacheutil", {"-q", "user"}, 1);
  expectMisuse("/usr/sbin/sysctl", {}, 1);
  expectMisuse("/usr/bin/which", {}, 1);
  expectMisuse("/usr/bin/top", {}, 1);
  expectMisuse("/usr/bin/pmset", {"displaysleepnow"}, 64);
  expectMisuse("/sbin/shutdown", {"-r", "now"}, 64);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, {"-i"}, {"-i", "-w", ""}, {"-i", "-w", "1x"}, {"-d", "-w", "1"}, {"-i", "-w 1"}}) {
    expectMisuse("/usr/bin/caffeinate", arguments, 64);
  }
  EXPECT_FALSE(exists(powerLog()));
}

TEST_F(MacCommandsTest, root_oddName_isFound) {
  const std::string odd = folder_ / "Anna's \"odd\" $HOME * \\Mac ";
  EXPECT_EQ(demo({"create", odd}).exitStatus, 0);
  makeDistinct(odd);
  expectItsOwnAnswers(odd);
}

TEST_F(MacCommandsTest, root_moved_isFound) {
  makeDistinct(root());
  std::filesystem::rename(root(), folder_ / "Moved");
  expectItsOwnAnswers(folder_ / "Moved");
}

TEST_F(MacCommandsTest, root_anyWorkingDirectory_isFound) {
  makeDistinct(root());
  expectItsOwnAnswers(root(), {"/", {}});
  expectItsOwnAnswers("./Mac", {folder_.path(), {}});
  expectAnswer(runProgram("./pgrep", {"-x", "bird"}, {root() + "/usr/bin", {}}), 0, "7\n");
}

TEST_F(MacCommandsTest, path_leadsNowhere_everyCommandWorks) {
  const ChildOptions nowhere = {{}, {{"PATH", "/nowhere"}}};
  EXPECT_EQ(onMac("/opt/homebrew/bin/brew", {"install", "lnav"}, nowhere).exitStatus, 0);
  for (const auto& [path, arguments] : std::map<std::string, std::vector<std::string>>{
           {"/usr/bin/pgrep", {"-x", "bird"}},
           {"/usr/sbin/route", {"-n", "get", "default"}},
           {"/usr/sbin/scutil", {"-r", "www.apple.com"}},
           {"/usr/bin/dscacheutil", {"-q", "host", "-a", "name", "www.apple.com"}},
           {"/usr/sbin/sysctl", {"vm.swapusage"}},
           {"/usr/bin/top", {"-l", "1", "-n", "0"}},
           {"/usr/bin/vm_stat", {}},
           {"/usr/bin/pmset", {"sleepnow"}},
           {"/sbin/shutdown", {"-h", "now"}},
           {"/opt/homebrew/bin/osx-cpu-temp", {}}}) {
    const ChildResult result = onMac(path, arguments, nowhere);
    EXPECT_EQ(result.exitStatus, 0) << path;
    EXPECT_EQ(result.err, "") << path;
  }
}

}  // namespace
}  // namespace cirrovane::test
