// What a scan takes alone, and while looks at the coverage of the same tree go on without a pause.

#include "core/CoverageScan.h"
#include "core/FolderNaming.h"
#include "core/ICloudScanEngine.h"
#include "platform/Machine.h"
#include "platform/posix/BackgroundThread.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using Seconds = std::chrono::duration<double>;

template <class Work>
double timeOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return Seconds(std::chrono::steady_clock::now() - start).count();
}

/// Looks on a thread of its own until it goes, as the application's would if it never rested.
class LooksWithoutRest {
 public:
  LooksWithoutRest(const CoverageScan& scan, const CoverageRequest& request)
      : thread_([this, &scan, &request] {
          giveWay();
          while (!stop_.isAsked()) {
            static_cast<void>(scan.look(request, stop_));
          }
        }) {}
  ~LooksWithoutRest() {
    stop_.ask();
    thread_.join();
  }
  LooksWithoutRest(const LooksWithoutRest&) = delete;
  LooksWithoutRest& operator=(const LooksWithoutRest&) = delete;

 private:
  CoverageStop stop_;
  std::thread thread_;
};

void measure(const std::string& folder, int repetitions) {
  const Machine machine = std::move(*makeMachine("/"));
  const CoverageScan coverage(*machine.fileSystem, *machine.clock);
  const ICloudScanEngine engine(*machine.fileSystem, *machine.clock);
  const std::vector<WatchFolder> folders = {{UUID(), watchFolderName(folder), folder}};
  const CoverageRequest request{folders, {}, {}};
  const auto scan = [&] {
    if (engine.scan(folders).metrics.totalFiles == 0) {
      throw std::runtime_error("a scan finds nothing");
    }
  };
  scan();
  std::string alone = "scan\talone";
  std::string beside = "scan\tbeside";
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    alone += fmt::format("\t{}", timeOf(scan));
    const LooksWithoutRest looks(coverage, request);
    beside += fmt::format("\t{}", timeOf(scan));
  }
  fmt::print("{}\n{}\n", alone, beside);
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  if (argumentCount != 3) {
    std::cerr << "Usage: coverage_bench FOLDER REPETITIONS\n";
    return 2;
  }
  try {
    cirrovane::measure(arguments[1], std::stoi(arguments[2]));
  } catch (const std::exception& error) {
    std::cerr << "coverage_bench: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
