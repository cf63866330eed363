// What a refresh costs besides its scan and its commands, and what an export of a very large report costs in time and
// memory, with and without waiting for the disk. Prints lines of: what, how, and the seconds, or bytes, of each
// repetition, with tabs between.

#include "bench/MacAnswers.h"
#include "bench/SampleRecords.h"
#include "coordinator/RefreshCycle.h"
#include "evidence/Evidence.h"
#include "evidence/Page.h"
#include "platform/Machine.h"
#include "platform/posix/DurableWriter.h"
#include "platform/posix/PosixFileStorage.h"
#include "stores/ProofPacket.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kBlockers = 500'000;
constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

template <class Work>
double secondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void print(std::string_view what, std::string_view how, const std::vector<double>& figures) {
  fmt::print("{}\t{}", what, how);
  for (const double figure : figures) {
    fmt::print("\t{:.9f}", figure);
  }
  fmt::print("\n");
  std::fflush(stdout);
}

/// Bytes that the kernel's account of this process has under a name: VmRSS now, VmHWM at most so far.
double memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) {
      return std::stod(line.substr(name.size() + 1)) * 1024;
    }
  }
  throw std::runtime_error("the kernel gives no account of memory");
}

/// Makes the most memory so far the memory now.
void forgetPeak() {
  std::ofstream("/proc/self/clear_refs") << 5;
}

SyncHealthReport largeReport(Time time) {
  SyncHealthReport report = sampleReport(0, time);
  report.metrics.pendingUploads = kBlockers;
  report.blockers.clear();
  report.blockers.reserve(kBlockers);
  UUIDGenerator makeID;
  for (std::size_t number = 0; number < kBlockers; ++number) {
    report.blockers.push_back({makeID(), longPath(number), "Contracts and invoices", BlockerReason::notUploaded,
                               "Still pending upload.", time});
  }
  return report;
}

/// The export, and as its rival the same bytes, ready in memory, through the same durable writer. In turns, so that
/// whatever else the machine does strikes both.
void measureExport(const std::string& folder, int repetitions) {
  const std::string path = folder + "/packet.json";
  const CallsWithoutSync withoutSync;
  const FileCalls withSync;
  ProofPacket packet;
  packet.report = Shared<SyncHealthReport>(largeReport(SystemClock().now()));
  const auto save = [&](const FileCalls& calls) {
    expect(!saveProofPacket(packet, PosixFileStorage(calls), path), "the packet was not written");
  };

  std::vector<double> peaks;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    forgetPeak();
    const double before = memory("VmRSS:");
    save(withoutSync);
    peaks.push_back(memory("VmHWM:") - before);
  }
  print("export", "peak over the report", peaks);
  print("export", "report", {memory("VmRSS:")});

  std::string bytes;
  writeProofPacket(packet, [&](std::string_view piece) {
    bytes += piece;
    return true;
  });
  print("export", "bytes", {static_cast<double>(bytes.size())});
  const auto writeReady = [&](const FileCalls& calls) {
    const auto failure = writeDurably(calls, path, FileAccess::asUsual, [&](const ByteSink& sink) {
      for (std::size_t start = 0; start < bytes.size(); start += kPieceSize) {
        if (!sink(std::string_view(bytes).substr(start, kPieceSize))) {
          return false;
        }
      }
      return true;
    });
    expect(!failure, "the bytes were not written");
  };
  for (const auto& [how, calls] :
       {std::pair<const char*, const FileCalls*>{"without sync", &withoutSync}, {"with sync", &withSync}}) {
    std::vector<double> ours;
    std::vector<double> ready;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
      ours.push_back(secondsOf([&] { save(*calls); }));
      expect(std::filesystem::file_size(path) == bytes.size(), "the file has not the packet's size");
      ready.push_back(secondsOf([&] { writeReady(*calls); }));
    }
    print("export", how, ours);
    print("ready bytes", how, ready);
  }
  std::filesystem::remove(path);
}

/// What is made of a large packet besides the packet itself: names hidden, from memory and from a file, and the page.
void measureEvidence(const std::string& folder, int repetitions) {
  const std::string path = folder + "/packet.json";
  const CallsWithoutSync withoutSync;
  {
    ProofPacket packet;
    packet.report = Shared<SyncHealthReport>(largeReport(SystemClock().now()));
    expect(!saveProofPacket(packet, PosixFileStorage(withoutSync), path), "the packet was not written");
    std::vector<double> pages;
    std::vector<double> sizes;
    std::vector<double> redactions;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
      std::size_t size = 0;
      pages.push_back(secondsOf([&] {
        PageContent page;
        expect(!evidenceOf(packet, {})({.redaction = Redaction::none, .page = &page}), "the page was not made");
        writePage(page, [&size](std::string_view piece) {
          size += piece.size();
          return true;
        });
      }));
      sizes.push_back(static_cast<double>(size));
      redactions.push_back(secondsOf([&] {
        const auto keep = [](std::string_view) { return true; };
        expect(!evidenceOf(packet, "/Users/demo")({.redaction = Redaction::names, .packet = keep}), "names are shown");
      }));
    }
    print("evidence", "page", pages);
    print("evidence", "page bytes", sizes);
    print("evidence", "redaction from memory", redactions);
  }
  malloc_trim(0);
  print("evidence", "bytes", {static_cast<double>(std::filesystem::file_size(path))});
  for (const auto& [how, redaction] : {std::pair{"copy", Redaction::none}, {"redaction", Redaction::names}}) {
    std::vector<double> seconds;
    std::vector<double> peaks;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
      forgetPeak();
      const double before = memory("VmRSS:");
      seconds.push_back(secondsOf([&, as = redaction] {
        Result<ByteSource> source = openByteSource(path);
        expect(static_cast<bool>(source), "the packet cannot be read");
        const auto failure = saveEvidence(evidenceFrom(std::move(*source)), as, {folder + "/other.json", std::nullopt},
                                          PosixFileStorage(withoutSync));
        expect(!failure, "names are shown");
      }));
      peaks.push_back(memory("VmHWM:") - before);
      malloc_trim(0);
    }
    print("evidence", fmt::format("{} of a file", how), seconds);
    print("evidence", fmt::format("{} of a file, peak", how), peaks);
  }
  std::filesystem::remove(path);
  std::filesystem::remove(folder + "/other.json");
}

class RefreshBench {
 public:
  RefreshBench(Machine& machine, std::string folder) : machine_(machine), folder_(std::move(folder)) {}

  void run(int repetitions) {
    const CallsWithoutSync withoutSync;
    const FileCalls withSync;
    measure("without sync", withoutSync, repetitions);
    measure("with sync", withSync, repetitions);
  }

 private:
  /// The real services over canned commands, with a full history and full incidents and one empty folder to watch.
  Services services(const FileStorage& storage) {
    const std::string watched = folder_ + "/watched";
    std::filesystem::create_directories(watched);
    for (const char* name : {"watchlist.json", "history.json", "incidents.json"}) {
      std::filesystem::remove(folder_ + "/" + name);
    }
    const FileSystem& files = *machine_.fileSystem;
    const Clock& clock = *machine_.clock;
    Services services;
    services.watchlist =
        std::make_unique<WatchlistStore>(files, storage, *machine_.collation, folder_ + "/watchlist.json");
    services.watchlist->addFolder(watched);
    services.historyStore = std::make_unique<ScanHistoryStore>(files, storage, folder_ + "/history.json");
    for (std::size_t number = 0; number < ScanHistoryStore::kMaximumSnapshots; ++number) {
      services.historyStore->record(sampleReport(number, clock.now()));
    }
    services.engine = std::make_shared<const ICloudScanEngine>(files, clock);
    services.diagnosticsService =
        std::make_shared<const PlatformDiagnosticsService>(*machine_.systemInformation, files, clock);
    services.systemStatusService =
        std::make_shared<const SystemStatusService>(*machine_.systemInformation, files, clock);
    services.makeProbes = [this] { return std::make_unique<ProbeRunner>(commands_, *machine_.monotonicClock); };
    services.incidentStore = std::make_unique<IncidentStore>(files, storage, clock, folder_ + "/incidents.json");
    std::vector<DiagnosticFinding> findings;
    for (std::size_t number = 0; number < IncidentStore::kMaximumRecords; ++number) {
      findings.push_back(sampleFinding(number, clock.now()));
    }
    services.incidentStore->merge(findings, clock.now());
    return services;
  }

  void measure(const char* how, const FileCalls& calls, int repetitions) {
    const PosixFileStorage storage(calls);
    InlineExecutor executor;
    RefreshCycle cycle(services(storage), {{executor, executor, executor, executor},
                                           *machine_.fileStorage,
                                           *machine_.userDefaults,
                                           *machine_.clock,
                                           *machine_.monotonicClock});
    std::vector<double> seconds(static_cast<std::size_t>(repetitions));
    for (double& time : seconds) {
      time = secondsOf([&] { cycle.refresh(); });
    }
    expect(cycle.diagnostics().value().size() > 20 && cycle.systemStatus().value().memoryUsedBytes,
           "a refresh found too little");
    expect(cycle.historyStore().snapshots().size() == ScanHistoryStore::kMaximumSnapshots &&
               !cycle.historyStore().saveFailure(),
           "the history is not full");
    expect(cycle.incidents().value().size() == IncidentStore::kMaximumRecords && !cycle.incidentStore().saveFailure(),
           "the incidents are not full");
    print("refresh", how, seconds);
  }

  Machine& machine_;
  std::string folder_;
  test::FakeCommandRunner commands_ = macAnswers();
};

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  const std::string what = argumentCount == 4 ? arguments[1] : "";
  const int repetitions = argumentCount == 4 ? std::atoi(arguments[3]) : 0;
  if (repetitions < 1 || (what != "export" && what != "evidence" && what != "refresh")) {
    std::fprintf(stderr,
                 "Usage: dashboard_bench export|evidence|refresh MAC_ROOT REPETITIONS\nWrites into MAC_ROOT/bench.\n");
    return 2;
  }
  try {
    const std::filesystem::path root = std::filesystem::absolute(arguments[2]);
    const std::filesystem::path folder = root / "bench";
    std::filesystem::create_directories(folder);
    if (what == "export") {
      cirrovane::measureExport(folder, repetitions);
      return 0;
    }
    if (what == "evidence") {
      cirrovane::measureEvidence(folder, repetitions);
      return 0;
    }
    auto machine = cirrovane::makeMachine(root);
    cirrovane::expect(static_cast<bool>(machine), "the folder cannot stand for a Mac");
    cirrovane::RefreshBench(*machine, folder).run(repetitions);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "dashboard_bench: %s\n", error.what());
    return 1;
  }
}
