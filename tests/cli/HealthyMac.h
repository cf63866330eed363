#pragma once

#include "tests/cli/Program.h"

#include <array>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Commands by where a Mac keeps them.
inline constexpr const char* kRoute = "/usr/sbin/route";
inline constexpr const char* kScutil = "/usr/sbin/scutil";
inline constexpr const char* kDscacheutil = "/usr/bin/dscacheutil";
inline constexpr const char* kSysctl = "/usr/sbin/sysctl";
inline constexpr const char* kWhich = "/usr/bin/which";
inline constexpr const char* kTop = "/usr/bin/top";
inline constexpr const char* kVMStat = "/usr/bin/vm_stat";
inline constexpr const char* kTemperatureTool = "/opt/homebrew/bin/osx-cpu-temp";
inline constexpr const char* kPgrep = "/usr/bin/pgrep";

/// A command, and what a healthy Mac's prints.
struct CommandAnswer {
  const char* command;
  const char* answer;
};

/// All commands that are asked for a text, which is all but pgrep.
inline constexpr std::array<CommandAnswer, 8> kAnswers = {{
    {kRoute, "   route to: default\n    gateway: 192.168.1.1\n"},
    {kScutil, "Reachable\n"},
    {kDscacheutil, "name: www.icloud.com\nip_address: 17.253.144.10\n"},
    {kSysctl, "vm.swapusage: total = 2048.00M  used = 512.00M  free = 1536.00M  (encrypted)\n"},
    {kWhich, "/opt/homebrew/bin/tool\n"},
    {kTop, "Processes: 512 total\nCPU usage: 7.31% user, 10.52% sys, 82.15% idle\n"},
    {kVMStat,
     "Mach Virtual Memory Statistics: (page size of 16384 bytes)\nPages active:   300000.\nPages wired down:   "
     "100000.\nPages occupied by compressor:   50000.\n"},
    {kTemperatureTool,
     "61.8\xC2\xB0"
     "C\n"},
}};

/// A folder that stands for a healthy Mac, whose commands are shell scripts.
class HealthyMac : public MacTree {
 public:
  HealthyMac() {
    describe(facts());
    for (const auto& [command, answer] : kAnswers) {
      setCommand(command, printing(answer));
    }
    setCommand(kPgrep, "[ \"$2\" != smartctl ]");
  }

  static nlohmann::json facts() {
    return {{"home", "/Users/demo"},
            {"ubiquityIdentityToken", true},
            {"runningApplications", {"com.apple.finder"}},
            {"volume", {{"availableForImportantUsage", 212'500'000'000}, {"total", 494'384'795'648}}},
            {"powerSources", {{{"Current Capacity", 87}, {"Max Capacity", 100}, {"Is Charging", true}}}},
            {"lowPowerMode", false},
            {"thermalState", "nominal"},
            {"loadAverages", {1.52, 1.31, 1.20}},
            {"physicalMemory", 17'179'869'184},
            {"uptimeSeconds", 273'600}};
  }
  void describe(const nlohmann::json& facts) const { writeFile(*this / "machine.json", facts.dump()); }

  /// Shell text that prints this text.
  static std::string printing(const std::string& text) { return "cat <<'END'\n" + text + "END\n"; }

  /// The real path of a command or of a file next to it.
  std::string pathOf(const std::string& command) const { return path() + command; }
  void setCommand(const std::string& command, const std::string& script) const {
    writeFile(pathOf(command), "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(pathOf(command), std::filesystem::perms::owner_all);
  }
  void removeCommand(const std::string& command) const { std::filesystem::remove(pathOf(command)); }

  ChildResult run(std::vector<std::string> arguments, const ChildOptions& options = {}) const {
    arguments.insert(arguments.begin(), {"--mac-root", path()});
    return ctl(arguments, options);
  }
};

/// A way in which commands may behave.
struct CommandBehaviour {
  const char* title;
  /// Makes the command, whose answer is otherwise known, behave so.
  std::function<void(const HealthyMac&, const char* command, const std::string& answer)> apply;

  friend std::ostream& operator<<(std::ostream& out, const CommandBehaviour& behaviour) {
    return out << behaviour.title;
  }
};

/// The ways in which a command gives no output, though most of them print its answer.
inline std::vector<CommandBehaviour> waysWithoutOutput() {
  using Answer = const std::string&;
  return {
      {"isMissing", [](const HealthyMac& mac, const char* command, Answer) { mac.removeCommand(command); }},
      {"isNotExecutable",
       [](const HealthyMac& mac, const char* command, Answer) {
         std::filesystem::permissions(mac.pathOf(command), std::filesystem::perms::owner_read);
       }},
      {"isAFolder",
       [](const HealthyMac& mac, const char* command, Answer) {
         mac.removeCommand(command);
         makeFolder(mac.pathOf(command));
       }},
      {"exitsWithStatus1", [](const HealthyMac& mac, const char* command,
                              Answer answer) { mac.setCommand(command, HealthyMac::printing(answer) + "exit 1"); }},
      {"isKilled", [](const HealthyMac& mac, const char* command,
                      Answer answer) { mac.setCommand(command, HealthyMac::printing(answer) + "kill -9 $$"); }},
      {"printsInvalidUTF8",
       [](const HealthyMac& mac, const char* command, Answer answer) {
         mac.setCommand(command, HealthyMac::printing(answer) + "printf '\\377'");
       }},
  };
}

/// The ways in which a command gives output after all.
inline std::vector<CommandBehaviour> waysWithOutput() {
  using Answer = const std::string&;
  return {
      {"printsOnStandardErrorOnly",
       [](const HealthyMac& mac, const char* command, Answer answer) {
         mac.setCommand(command, "exec >&2\n" + HealthyMac::printing(answer));
       }},
      {"printsTenMegabytesMore",
       [](const HealthyMac& mac, const char* command, Answer answer) {
         mac.setCommand(command, HealthyMac::printing(answer) + "head -c 5000000 /dev/zero | tr '\\0' '\\n'\n" +
                                     "head -c 5000000 /dev/zero | tr '\\0' x");
       }},
  };
}

}  // namespace cirrovane::test
