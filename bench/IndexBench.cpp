// Measures an index of a tree: what a change costs it beside a full scan, and what it costs in memory.

#include "bench/PendingFile.h"
#include "core/ICloudScanEngine.h"
#include "core/ScanIndex.h"
#include "platform/Machine.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace cirrovane {
namespace {

using Paths = std::vector<std::filesystem::path>;

double secondsOf(const std::function<void()>& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void print(std::string_view what, std::string_view how, const std::vector<double>& seconds) {
  std::cout << fmt::format("{}\t{}\t{}\n", what, how, fmt::join(seconds, "\t"));
}

void require(bool isSo, const char* what) {
  if (!isSo) {
    throw std::runtime_error(what);
  }
}

FolderChange changeOf(const std::filesystem::path& file) {
  return {file.parent_path().native(), file.filename().native()};
}

struct Bench {
  const FileSystem& fileSystem;
  SystemClock clock = {};
  std::vector<WatchFolder> folders = {};

  ScanIndex index() const { return ScanIndex::scan(folders, fileSystem, clock); }
  SyncHealthReport scan() const { return ICloudScanEngine(fileSystem, clock).scan(folders); }

  void measureScans(std::size_t runs) const {
    std::vector<double> scans;
    std::vector<double> indexes;
    for (std::size_t run = 0; run < runs; ++run) {
      scans.push_back(secondsOf([&] { scan(); }));
      indexes.push_back(secondsOf([&] { index(); }));
    }
    print("full", "scan", scans);
    print("full", "index", indexes);
  }

  void measureChanges(std::size_t runs) const {
    ScanIndex known = index();
    std::vector<double> glances;
    std::vector<double> updates;
    for (const std::filesystem::path& path : someFiles(folders.front().path, runs)) {
      const std::vector<FolderChange> changes = {changeOf(path)};
      {
        const PendingFile pending(path);
        glances.push_back(secondsOf([&] { require(known.glance(changes).has_value(), "a glance saw nothing"); }));
        updates.push_back(secondsOf([&] {
          known.update(changes);
          require(!known.report().safeToClose, "an update saw nothing");
        }));
      }
      known.update(changes);
      require(known.report().safeToClose, "a file stays pending");
    }
    print("change", "glance", glances);
    print("change", "update", updates);
  }

  void measureBurst(std::size_t runs, std::size_t files) const {
    ScanIndex known = index();
    const Paths paths = someFiles(folders.front().path, files);
    std::vector<double> bursts;
    std::vector<double> reports;
    std::vector<double> again;
    for (std::size_t run = 0; run < runs; ++run) {
      std::vector<FolderChange> changes;
      for (const std::filesystem::path& path : paths) {
        changes.push_back(changeOf(path));
      }
      {
        std::vector<std::unique_ptr<PendingFile>> pending;
        for (const std::filesystem::path& path : paths) {
          pending.push_back(std::make_unique<PendingFile>(path));
        }
        bursts.push_back(secondsOf([&] {
          known.glance(changes);
          known.update(changes);
          require(known.report().blockers.size() == files, "a burst was not seen");
        }));
        reports.push_back(secondsOf([&] { known.report(); }));
        again.push_back(secondsOf([&] { known.readBlockedAgain(2'000); }));
      }
      known.update(changes);
    }
    print("burst", "glance, update and report", bursts);
    print("burst", "report", reports);
    print("burst", "2,000 read again", again);
  }
};

std::size_t numberOf(std::string_view text) {
  std::size_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

int run(const std::vector<std::string>& arguments) {
  auto opened = makeMachine("/");
  require(static_cast<bool>(opened), "no machine");
  const Machine machine = std::move(*opened);
  Bench bench{*machine.fileSystem};
  bench.folders = {WatchFolder{UUID(), "Tree", arguments.at(1)}};
  const std::size_t runs = arguments.size() > 2 ? numberOf(arguments[2]) : 1;
  const std::string& what = arguments.front();
  if (what == "changes") {
    bench.measureScans(std::min<std::size_t>(runs, 9));
    bench.measureChanges(runs);
  } else if (what == "burst") {
    bench.measureScans(runs);
    bench.measureBurst(runs, 10'000);
  } else if (what == "scan") {
    require(bench.scan().safeToClose, "the tree is not clean");
  } else if (what == "index") {
    require(bench.index().report().safeToClose, "the tree is not clean");
  } else {
    throw std::invalid_argument("what to measure: changes, burst, scan or index");
  }
  return 0;
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  try {
    return cirrovane::run({arguments + 1, arguments + argumentCount});
  } catch (const std::exception& error) {
    std::cerr << "index_bench: " << error.what() << '\n';
    return 1;
  }
}
