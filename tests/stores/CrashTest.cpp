// Saves without end in child processes that are killed at random moments: after each kill the file has to be one whole
// document, the old or the new one.

#include "base/FileDescriptor.h"
#include "base/JSONReader.h"
#include "stores/AcknowledgementStore.h"
#include "stores/FileCountStore.h"
#include "stores/IncidentStore.h"
#include "stores/ScanHistoryStore.h"
#include "stores/UploadsStore.h"
#include "stores/WatchlistStore.h"
#include "tests/stores/StoreFixture.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <random>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr int kKills = CIRROVANE_KILLS;
constexpr int kKillsInsideASave = kKills / 4;
constexpr int kMostKills = 10 * kKills;
constexpr std::int64_t kFullHistory = 200;

class CrashTest : public StoreTest {
 protected:
  std::size_t temporaryFileCount() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(storePath(""))) {
      count += entry.path().filename().native().starts_with(".cirrovane-") ? 1U : 0U;
    }
    return count;
  }

  /// Kills children that save, until there were enough kills, and enough of them between the birth of a temporary file
  /// and its rename; checks the document after each.
  /// The saver says when it is about to save, so that no time to die is wasted on its beginnings.
  void killSavers(const std::function<void(const std::function<void()>& sayReady)>& saveForever,
                  const std::function<void()>& checkDocument) {
    // A fixed seed repeats the choice of moments, though not what the machine does in them.
    std::mt19937 random(20'261'121);
    std::uniform_int_distribution<int> microseconds(0, 3'000);
    int kills = 0;
    int killsInsideASave = 0;
    std::size_t mostTemporaryFiles = 0;
    while ((kills < kKills || killsInsideASave < kKillsInsideASave) && kills < kMostKills && !HasFailure()) {
      std::array<int, 2> ends{};
      ASSERT_EQ(pipe(ends.data()), 0);
      const FileDescriptor readEnd(ends[0]);
      FileDescriptor writeEnd(ends[1]);
      const pid_t child = fork();
      ASSERT_GE(child, 0);
      if (child == 0) {
        saveForever([&] { static_cast<void>(!write(writeEnd.get(), "", 1)); });
        _exit(1);
      }
      writeEnd = FileDescriptor();
      char ready = 0;
      ASSERT_EQ(read(readEnd.get(), &ready, 1), 1);
      std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
      kill(child, SIGKILL);
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      ASSERT_TRUE(WIFSIGNALED(status)) << "the saver ended by itself";
      ++kills;
      const std::size_t count = temporaryFileCount();
      killsInsideASave += count > 0 ? 1 : 0;
      mostTemporaryFiles = std::max(mostTemporaryFiles, count);
      checkDocument();
    }
    std::cout << "[   kills  ] " << kills << ", of which " << killsInsideASave
              << " between a temporary file's birth and its rename; at most " << mostTemporaryFiles
              << " temporary files at a time\n";
    EXPECT_GE(kills, kKills);
    EXPECT_GE(killsInsideASave, kKillsInsideASave);
    // Each saver removes what the one before it left.
    EXPECT_LE(mostTemporaryFiles, 1U);
  }
};

TEST_F(CrashTest, watchlistKilledWhileSaving_isTheOldOrTheNewList) {
  constexpr std::size_t kFolders = 40;
  const auto pathOf = [](std::size_t number) { return "/x/folder-" + std::to_string(100 + number); };
  WatchlistStore store(fileSystem_, storage_, collation_);
  for (std::size_t number = 0; number < kFolders; ++number) {
    store.addFolder(pathOf(number));
  }
  killSavers(
      [&](const auto& sayReady) {
        WatchlistStore saver(fileSystem_, storage_, collation_);
        sayReady();
        while (true) {
          saver.addFolder(pathOf(kFolders));
          saver.removeFolder(saver.folders().back().id);
        }
      },
      [&] {
        WatchlistStore found(fileSystem_, storage_, collation_);
        ASSERT_TRUE(found.folders().size() == kFolders || found.folders().size() == kFolders + 1)
            << found.folders().size();
        for (std::size_t number = 0; number < found.folders().size(); ++number) {
          ASSERT_EQ(found.folders()[number].path, pathOf(number));
        }
        if (found.folders().size() > kFolders) {
          found.removeFolder(found.folders().back().id);
        }
      });
}

TEST_F(CrashTest, historyKilledWhileSaving_isTheOldOrTheNewHistory) {
  const auto record = [](ScanHistoryStore& store, std::int64_t number) {
    SyncHealthReport report;
    report.metrics.pendingUploads = number;
    store.record(report);
  };
  ScanHistoryStore store(fileSystem_, storage_);
  for (std::int64_t number = 0; number < kFullHistory; ++number) {
    record(store, number);
  }
  std::int64_t latest = kFullHistory - 1;
  killSavers(
      [&](const auto& sayReady) {
        ScanHistoryStore saver(fileSystem_, storage_);
        sayReady();
        for (std::int64_t number = latest + 1;; ++number) {
          record(saver, number);
        }
      },
      [&] {
        const ScanHistoryStore found(fileSystem_, storage_);
        ASSERT_EQ(std::ssize(found.snapshots()), kFullHistory);
        ASSERT_GE(found.snapshots().front().pendingUploads, latest);
        latest = found.snapshots().front().pendingUploads;
        for (std::int64_t place = 0; place < kFullHistory; ++place) {
          ASSERT_EQ(found.snapshots()[static_cast<std::size_t>(place)].pendingUploads, latest - place);
        }
      });
}

TEST_F(CrashTest, incidentsKilledWhileSaving_areTheOldOrTheNewOnes) {
  constexpr std::size_t kIncidents = 60;
  const auto merge = [](IncidentStore& store, std::int64_t number) {
    std::vector<DiagnosticFinding> findings;
    for (std::size_t index = 0; index < kIncidents; ++index) {
      findings.push_back({UUID(), DiagnosticDomain::system, DiagnosticSeverity::warning,
                          "Problem " + std::to_string(index), std::to_string(number), Time()});
    }
    store.merge(findings, Time(std::chrono::seconds(number)));
  };
  IncidentStore store(fileSystem_, storage_, clock_);
  merge(store, 1);
  std::int64_t latest = 1;
  killSavers(
      [&](const auto& sayReady) {
        IncidentStore saver(fileSystem_, storage_, clock_);
        sayReady();
        for (std::int64_t number = latest + 1;; ++number) {
          merge(saver, number);
        }
      },
      [&] {
        const IncidentStore found(fileSystem_, storage_, clock_);
        ASSERT_EQ(found.records().size(), kIncidents);
        ASSERT_GE(found.records().front().occurrences, latest);
        latest = found.records().front().occurrences;
        for (const IncidentRecord& incident : found.records()) {
          ASSERT_EQ(incident.occurrences, latest);
          ASSERT_EQ(incident.lastDetail, std::to_string(latest));
        }
      });
}

TEST_F(CrashTest, acknowledgementsKilledWhileSaving_areTheOldOrTheNewOnes) {
  constexpr std::size_t kPaths = 60;
  const AcknowledgementStore store(fileSystem_, storage_, clock_);
  std::vector<std::string> paths;
  for (std::size_t number = 0; number < kPaths; ++number) {
    paths.push_back("/x/" + std::to_string(100 + number));
  }
  ASSERT_EQ(store.acknowledge(paths, std::nullopt), std::nullopt);
  killSavers(
      [&](const auto& sayReady) {
        sayReady();
        while (true) {
          static_cast<void>(store.acknowledge({"/x/more"}, std::nullopt));
          static_cast<void>(store.forget({"/x/more"}));
        }
      },
      [&] {
        // The lock of whoever was killed went with it.
        const std::vector<Acknowledgement> found = store.current();
        ASSERT_TRUE(found.size() == kPaths || found.size() == kPaths + 1) << found.size();
        for (std::size_t number = 0; number < kPaths; ++number) {
          ASSERT_EQ(found[number].path, paths[number]);
        }
      });
}

TEST_F(CrashTest, fileCountsKilledWhileSaving_areTheOldOrTheNewOnes) {
  constexpr std::int64_t kFolders = 40;
  const FileCountStore store(fileSystem_, storage_, clock_);
  const auto countsOf = [](std::int64_t files) {
    std::vector<FolderFileCount> counts;
    for (std::int64_t number = 0; number < kFolders; ++number) {
      counts.push_back({"/x/" + std::to_string(100 + number), files});
    }
    return counts;
  };
  ASSERT_EQ(store.beginAnew(countsOf(1)), std::nullopt);
  std::int64_t latest = 1;
  killSavers(
      [&](const auto& sayReady) {
        sayReady();
        for (std::int64_t files = latest + 1;; ++files) {
          static_cast<void>(store.beginAnew(countsOf(files)));
        }
      },
      [&] {
        const std::vector<FolderFileCount> found = store.most();
        ASSERT_EQ(std::ssize(found), kFolders);
        ASSERT_GE(found.front().files, latest);
        latest = found.front().files;
        ASSERT_EQ(found, countsOf(latest));
      });
}

TEST_F(CrashTest, uploadsKilledWhileSaving_areTheOldOrTheNewOnes) {
  constexpr std::int64_t kFiles = 60;
  const UploadsStore store(fileSystem_, storage_);
  const auto reportOf = [](std::int64_t bytes) {
    SyncHealthReport report;
    report.generatedAt = Time(std::chrono::seconds(bytes));
    for (std::int64_t number = 0; number < kFiles; ++number) {
      SyncBlocker& blocker = report.blockers.emplace_back();
      blocker.reason = BlockerReason::notUploaded;
      blocker.filePath = "/x/" + std::to_string(100 + number);
      blocker.fileSize = bytes;
    }
    return report;
  };
  ASSERT_EQ(store.note(reportOf(1)).failure, std::nullopt);
  std::int64_t latest = 1;
  killSavers(
      [&](const auto& sayReady) {
        sayReady();
        for (std::int64_t bytes = latest + 1;; ++bytes) {
          static_cast<void>(store.note(reportOf(bytes)));
        }
      },
      [&] {
        const auto found = decodeJSON<UploadRecord>(readFile(storePath("uploads.json")));
        ASSERT_TRUE(found);
        ASSERT_EQ(std::ssize(found->files), kFiles);
        ASSERT_GE(found->files.front().bytes, latest);
        latest = found->files.front().bytes;
        for (const FollowedUpload& file : found->files) {
          ASSERT_EQ(file.bytes, latest);
          ASSERT_EQ(file.pendingSince, Time(std::chrono::seconds(1)));
        }
      });
}

}  // namespace
}  // namespace cirrovane::test
