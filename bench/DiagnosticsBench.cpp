// What judging the machine costs besides the commands that it runs, and what starting a command costs beside the bare
// system call, in a small process and in one that has much memory. Prints lines of: what, how, and the seconds of each
// repetition, with tabs between.

#include "bench/MacAnswers.h"
#include "core/SyncHealthReport.h"
#include "core/WatchFolder.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "diagnostics/ProbeRunner.h"
#include "diagnostics/SystemStatusService.h"
#include "platform/Machine.h"
#include "platform/posix/ChildProcess.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kFolders = 50;
constexpr std::size_t kLargeHeap = std::size_t{1} << 30U;
constexpr const char* kCommand = "/bin/true";

void expect(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

template <class Work>
double secondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void print(std::string_view what, std::string_view how, const std::vector<double>& seconds) {
  fmt::print("{}\t{}", what, how);
  for (const double time : seconds) {
    fmt::print("\t{:.9f}", time);
  }
  fmt::print("\n");
}

void measureOwnCost(const Machine& machine, int repetitions) {
  const test::FakeCommandRunner commands = macAnswers();
  SyncHealthReport report;
  report.generatedAt = machine.clock->now();
  report.metrics.pendingUploads = 3;
  report.blockers.emplace_back().filePath = "/Users/demo/Invoices/2026-11.pdf";
  const std::vector<WatchFolder> folders(kFolders, {UUID(), "Invoices", "/Users/demo/Invoices"});
  const PlatformDiagnosticsService diagnostics(*machine.systemInformation, *machine.fileSystem, *machine.clock);
  const SystemStatusService status(*machine.systemInformation, *machine.fileSystem, *machine.clock);
  std::vector<double> collects;
  std::vector<double> captures;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    ProbeRunner probes(commands, *machine.monotonicClock);
    collects.push_back(secondsOf(
        [&] { expect(diagnostics.collect(probes, report, folders).findings.size() > 20, "findings are missing"); }));
    captures.push_back(
        secondsOf([&] { expect(status.capture(probes).memoryUsedBytes.has_value(), "a value is missing"); }));
  }
  print("collect", "without commands", collects);
  print("capture", "without commands", captures);
}

void spawnBarely() {
  pid_t child = 0;
  std::string name = kCommand;
  char* const list[] = {name.data(), nullptr};
  expect(posix_spawn(&child, kCommand, nullptr, nullptr, list, environ) == 0, "nothing can be started");
  expect(waitpid(child, nullptr, 0) == child, "the child is lost");
}

void spawnOurWay(CommandOutput output) {
  const auto result = runChild(kCommand, {}, output, std::nullopt, std::chrono::seconds(10));
  expect(result && result->hasSucceeded(), "nothing can be started");
}

/// Ours and the bare call in turns, so that whatever else the machine does strikes both.
void measureSpawns(const char* heap, int repetitions) {
  std::vector<double> ours;
  std::vector<double> unread;
  std::vector<double> bare;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    ours.push_back(secondsOf([] { spawnOurWay(CommandOutput::collected); }));
    unread.push_back(secondsOf([] { spawnOurWay(CommandOutput::discarded); }));
    bare.push_back(secondsOf(spawnBarely));
  }
  print("spawn", heap, ours);
  print("spawn, output unread", heap, unread);
  print("posix_spawn", heap, bare);
}

void run(const Machine& machine, int repetitions) {
  measureOwnCost(machine, repetitions);
  measureSpawns("small heap", repetitions);
  const std::vector<char> heap(kLargeHeap, 'x');
  measureSpawns("1 GB heap", repetitions);
  expect(heap.back() == 'x', "the heap is gone");
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  const int repetitions = argumentCount == 3 ? std::atoi(arguments[2]) : 0;
  if (repetitions < 1) {
    std::fprintf(stderr, "Usage: diagnostics_bench MAC_ROOT REPETITIONS\n");
    return 2;
  }
  try {
    auto machine = cirrovane::makeMachine(std::filesystem::absolute(arguments[1]));
    if (!machine) {
      throw std::runtime_error(machine.message());
    }
    cirrovane::run(*machine, repetitions);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "diagnostics_bench: %s\n", error.what());
    return 1;
  }
}
