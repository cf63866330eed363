#pragma once

#include "diagnostics/DiagnosticFinding.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/ProbeRunner.h"
#include "tests/core/Builders.h"
#include "tests/support/FakeCommandRunner.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeSystemInformation.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualMonotonicClock.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {

/// What a finding says to the user.
struct Row {
  DiagnosticSeverity severity = DiagnosticSeverity::info;
  std::string title;
  std::string detail;

  friend bool operator==(const Row&, const Row&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << rawValue(row.severity) << " | " << row.title << " | " << row.detail;
  }
};

inline std::vector<Row> rowsOf(const std::vector<DiagnosticFinding>& findings) {
  std::vector<Row> rows;
  std::ranges::transform(findings, std::back_inserter(rows), [](const DiagnosticFinding& finding) {
    return Row{finding.severity, finding.title, finding.detail};
  });
  return rows;
}

/// The row with this title; absent when no finding has it.
inline std::optional<Row> rowTitled(const std::string& title, const std::vector<DiagnosticFinding>& findings) {
  const std::vector<Row> rows = rowsOf(findings);
  const auto found = std::ranges::find(rows, title, &Row::title);
  return found != rows.end() ? std::optional(*found) : std::nullopt;
}

/// A healthy Mac: every command answers, and nothing is to be complained of.
class MachineTest : public testing::Test {
 protected:
  using CommandLine = FakeCommandRunner::CommandLine;

  inline static const CommandLine kRoute = {"/usr/sbin/route", "-n", "get", "default"};
  inline static const CommandLine kReachability = {"/usr/sbin/scutil", "-r", "www.icloud.com"};
  inline static const CommandLine kResolution = {"/usr/bin/dscacheutil", "-q", "host", "-a", "name", "www.icloud.com"};
  inline static const CommandLine kSwap = {"/usr/sbin/sysctl", "vm.swapusage"};
  inline static const CommandLine kSMARTLookup = {"/usr/bin/which", "smartctl"};
  inline static const CommandLine kTop = {"/usr/bin/top", "-l", "1", "-n", "0"};
  inline static const CommandLine kTemperatureLookup = {"/usr/bin/which", "osx-cpu-temp"};
  inline static const CommandLine kTemperature = {"/opt/homebrew/bin/osx-cpu-temp"};
  inline static const CommandLine kIntelTemperature = {"/usr/local/bin/osx-cpu-temp"};
  inline static const CommandLine kMemory = {"/usr/bin/vm_stat"};

  static CommandLine pgrep(const std::string& name) { return {"/usr/bin/pgrep", "-x", name}; }

  MachineTest() {
    files_.addExisting(std::string(kDrive));
    files_.setVolumeCapacities("/Users/test", {212'500'000'000, 494'384'795'648});
    for (const char* name : {"bird", "cloudd", "fileproviderd"}) {
      commands_.answer(pgrep(name), "501\n");
    }
    commands_.answer(pgrep("smartctl"), {1, ""});
    commands_.answer(kRoute, "   route to: default\n    gateway: 192.168.1.1\n  interface: en0\n");
    commands_.answer(kReachability, "Reachable\n");
    commands_.answer(kResolution, "name: www.icloud.com\nip_address: 17.253.144.10\n");
    commands_.answer(kSwap, "vm.swapusage: total = 2048.00M  used = 512.00M  free = 1536.00M  (encrypted)\n");
    commands_.answer(kSMARTLookup, "/opt/homebrew/bin/smartctl\n");
    commands_.answer(kTop, "Processes: 512 total\nCPU usage: 7.31% user, 10.52% sys, 82.15% idle \n");
    commands_.answer(kTemperatureLookup, "/opt/homebrew/bin/osx-cpu-temp\n");
    commands_.answer(kTemperature, "61.8°C\n");
    commands_.makeExecutable(kTemperature.front());
    commands_.answer(kMemory,
                     "Mach Virtual Memory Statistics: (page size of 16384 bytes)\n"
                     "Pages free:                               12345.\n"
                     "Pages active:                            300000.\n"
                     "Pages inactive:                          280000.\n"
                     "Pages speculative:                         1000.\n"
                     "Pages wired down:                        100000.\n"
                     "Pages purgeable:                           2000.\n"
                     "Pages stored in compressor:              500000.\n"
                     "Pages occupied by compressor:             50000.\n");
    report_.generatedAt = clock_.now();
  }

  PlatformDiagnosticsService service() const { return {system_, files_, clock_}; }
  /// The probes of a new cycle.
  ProbeRunner& newProbes() const { return probes_.emplace(commands_, monotonicClock_); }

  /// A watched folder that exists.
  WatchFolder existingFolder(const std::string& path = "/Users/test/Work") {
    files_.addExisting(path);
    return makeFolder("Work", path);
  }

  /// Lets a command end in each of the ways that give no output, and calls `check` with every one of them.
  template <class Check>
  void inEveryWayWithoutOutput(const CommandLine& line, Check check) {
    const std::string usual =
        commands_.run(line.front(), {line.begin() + 1, line.end()}, CommandOutput::collected, std::nullopt)
            .value_or(CommandResult())
            .output;
    const auto checkIn = [&](const char* way) {
      const testing::ScopedTrace trace("", 0, way);
      check();
    };
    commands_.forget(line);
    checkIn("is missing");
    commands_.answer(line, {1, usual});
    checkIn("exits with status 1");
    commands_.answer(line, {std::nullopt, usual});
    checkIn("is killed");
    commands_.answer(line, usual + "\xFF");
    checkIn("prints what is no UTF-8");
    commands_.answer(line, usual);
  }

  FakeCommandRunner commands_;
  FakeSystemInformation system_;
  FakeFileSystem files_;
  ManualClock clock_;
  ManualMonotonicClock monotonicClock_;
  /// Of a scan that found nothing to complain of, and ended just now.
  SyncHealthReport report_;

 private:
  mutable std::optional<ProbeRunner> probes_;
};

}  // namespace cirrovane::test
