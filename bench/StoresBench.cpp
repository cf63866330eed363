// What the stores' own work costs at their largest, with and without waiting for the disk. Prints lines of: what, how,
// and the seconds of each repetition, with tabs between.

#include "base/JSONWriter.h"
#include "bench/SampleRecords.h"
#include "platform/Clock.h"
#include "platform/linux/host/HostDisk.h"
#include "platform/linux/host/ICUCollation.h"
#include "platform/linux/macroot/MacRoot.h"
#include "platform/linux/macroot/RootDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/posix/PosixFileStorage.h"
#include "stores/IncidentStore.h"
#include "stores/ScanHistoryStore.h"
#include "stores/StoreFile.h"
#include "stores/UploadsStore.h"
#include "stores/WatchlistStore.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kFindings = 100;
constexpr std::size_t kKnownFindings = kFindings / 2;
constexpr std::size_t kFolders = 50;

class Bench {
 public:
  Bench(std::string folder, const MacRoot& root, int repetitions)
      : folder_(std::move(folder)), fileSystem_(foldersOf(root), hostVolume), repetitions_(repetitions) {}

  void run() {
    const CallsWithoutSync withoutSync;
    const FileCalls withSync;
    fill(PosixFileStorage(withoutSync));
    measureWrites("without sync", PosixFileStorage(withoutSync));
    measureWrites("with sync", PosixFileStorage(withSync));
    measureLoads("without sync", PosixFileStorage(withoutSync));
  }

 private:
  std::string pathOf(const char* name) const { return folder_ + "/" + name; }

  ScanHistoryStore history(const FileStorage& storage) const { return {fileSystem_, storage, pathOf("history.json")}; }
  IncidentStore incidents(const FileStorage& storage) const {
    return {fileSystem_, storage, clock_, pathOf("incidents.json")};
  }
  WatchlistStore watchlist(const FileStorage& storage) const {
    return {fileSystem_, storage, collation_, pathOf("watchlist.json")};
  }

  UploadsStore uploads(const FileStorage& storage) const { return {fileSystem_, storage, pathOf("uploads.json")}; }

  /// As many pending files as are remembered, each of so many bytes.
  SyncHealthReport pendingReport(std::size_t bytes) const {
    SyncHealthReport report;
    report.generatedAt = clock_.now();
    for (std::size_t number = 0; number < UploadRecord::kMostFiles; ++number) {
      SyncBlocker& blocker = report.blockers.emplace_back();
      blocker.reason = BlockerReason::notUploaded;
      blocker.filePath = longPath(number);
      blocker.fileSize = static_cast<std::int64_t>(bytes);
    }
    return report;
  }

  /// Makes each file as large as it can become.
  void fill(const FileStorage& storage) {
    ScanHistoryStore history = this->history(storage);
    for (std::size_t count = 0; count < ScanHistoryStore::kMaximumSnapshots; ++count) {
      history.record(sampleReport(next_++, clock_.now()));
    }
    IncidentStore incidents = this->incidents(storage);
    std::vector<DiagnosticFinding> findings;
    for (std::size_t number = 0; number < IncidentStore::kMaximumRecords; ++number) {
      findings.push_back(sampleFinding(number, clock_.now()));
    }
    incidents.merge(findings, clock_.now());
    WatchlistStore watchlist = this->watchlist(storage);
    for (std::size_t number = 0; number < kFolders; ++number) {
      watchlist.addFolder(longPath(number));
    }
    expect(!uploads(storage).note(pendingReport(0)).failure, "the uploads were not written");
    expect(!history.saveFailure() && !incidents.saveFailure() && !watchlist.saveFailure(), "a file was not written");
  }

  void measureWrites(const char* how, const FileStorage& storage) {
    ScanHistoryStore history = this->history(storage);
    measure(
        "record", how, [&](std::size_t number) { return sampleReport(number, clock_.now()); },
        [&](const SyncHealthReport& report) { history.record(report); });
    expect(history.snapshots().size() == ScanHistoryStore::kMaximumSnapshots && !history.saveFailure(),
           "the history is not full");

    // Half of what is found was found the last time too.
    const auto findings = [&](std::size_t number) {
      std::vector<DiagnosticFinding> found;
      for (std::size_t index = 0; index < kFindings; ++index) {
        const bool isKnown = index < kKnownFindings;
        found.push_back(sampleFinding(isKnown ? index : number * kFindings + index, clock_.now()));
      }
      return found;
    };
    IncidentStore incidents = this->incidents(storage);
    measure("merge", how, findings,
            [&](const std::vector<DiagnosticFinding>& found) { incidents.merge(found, clock_.now()); });
    expect(incidents.records().size() == IncidentStore::kMaximumRecords && !incidents.saveFailure(),
           "the incidents are not full");

    const UploadsStore uploads = this->uploads(storage);
    UploadRecord record;
    measure(
        "note uploads", how, [&](std::size_t number) { return pendingReport(number); },
        [&](const SyncHealthReport& report) { record = uploads.note(report).record; });
    expect(record.files.size() == UploadRecord::kMostFiles, "the uploads are not full");
    StoreFile file(fileSystem_, storage, pathOf("uploads.json"));
    measure(
        "save uploads", how, [](std::size_t /*number*/) { return 0; },
        [&](int /*unused*/) {
          file.save([&record](const ByteSink& sink) {
            JSONWriter writer(sink, UploadsStore::kLayout);
            writer.write(record);
            return writer.finish() && sink("\n");
          });
        });
    expect(!file.saveFailure(), "the uploads were not saved");
  }

  void measureLoads(const char* how, const FileStorage& storage) {
    const auto nothing = [](std::size_t /*number*/) { return 0; };
    measure("load history", how, nothing, [&](int /*unused*/) {
      expect(history(storage).snapshots().size() == ScanHistoryStore::kMaximumSnapshots, "not all snapshots are back");
    });
    measure("load incidents", how, nothing, [&](int /*unused*/) {
      expect(incidents(storage).records().size() == IncidentStore::kMaximumRecords, "not all incidents are back");
    });
    measure("load watchlist", how, nothing, [&](int /*unused*/) {
      expect(watchlist(storage).folders().size() == kFolders, "not all folders are back");
    });
  }

  /// Times `work` alone, on what `prepare` makes of a number that does not come twice.
  template <class Prepare, class Work>
  void measure(const char* what, const char* how, const Prepare& prepare, const Work& work) {
    fmt::print("{}\t{}", what, how);
    for (int repetition = 0; repetition < repetitions_; ++repetition) {
      const auto input = prepare(next_++);
      const auto start = std::chrono::steady_clock::now();
      work(input);
      const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
      fmt::print("\t{:.9f}", elapsed.count());
    }
    fmt::print("\n");
  }

  std::string folder_;
  LinuxFileSystem fileSystem_;
  SystemClock clock_;
  ICUCollation collation_;
  int repetitions_;
  std::size_t next_ = IncidentStore::kMaximumRecords;
};

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  const int repetitions = argumentCount == 3 ? std::atoi(arguments[2]) : 0;
  if (repetitions < 1) {
    std::fprintf(stderr, "Usage: stores_bench FOLDER REPETITIONS\nWrites the stores' files into FOLDER.\n");
    return 2;
  }
  try {
    const std::filesystem::path folder = std::filesystem::absolute(arguments[1]);
    std::filesystem::create_directories(folder);
    for (const char* name : {"history.json", "incidents.json", "uploads.json", "watchlist.json"}) {
      std::filesystem::remove(folder / name);
    }
    auto root = cirrovane::MacRoot::open(folder);
    if (!root) {
      throw std::runtime_error(root.message());
    }
    cirrovane::Bench(folder, *root, repetitions).run();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "stores_bench: %s\n", error.what());
    return 1;
  }
}
