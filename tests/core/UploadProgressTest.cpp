#include "core/UploadProgress.h"
#include "tests/support/FakeFileSystem.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Time kBegin{std::chrono::seconds(1'790'000'000)};

/// Looks at files in memory, by a clock that a test moves.
class Uploads : public testing::Test {
 protected:
  void add(const std::string& path, std::int64_t bytes) { pending_[path] = bytes; }
  void upload(const std::string& path) {
    pending_.erase(path);
    states_[path] = UploadState::uploaded;
  }
  void remove(const std::string& path) {
    pending_.erase(path);
    states_[path] = UploadState::none;
  }

  void look() {
    record_ = afterLook(std::move(record_), files(), now_, [this](const std::vector<std::string>& paths) {
      asked_ = paths;
      std::vector<UploadState> states;
      for (const std::string& path : paths) {
        states.push_back(states_[path]);
      }
      return states;
    });
  }
  void lookAfter(std::chrono::microseconds time) {
    now_ += time;
    look();
  }
  PendingUploads uploads() const { return pendingUploads(record_, files(), now_); }
  PendingUpload uploadAt(const std::string& path) const {
    for (const PendingUpload& upload : uploads().files) {
      if (upload.filePath == path) {
        return upload;
      }
    }
    ADD_FAILURE() << path << " is not pending";
    return {};
  }

  std::map<std::string, UploadState> states_;
  std::vector<std::string> asked_;
  UploadRecord record_;
  Time now_ = kBegin;

 private:
  std::vector<PendingFile> files() const {
    std::vector<PendingFile> files;
    for (const auto& [path, bytes] : pending_) {
      files.push_back({path, "Work", bytes});
    }
    return files;
  }

  std::map<std::string, std::int64_t> pending_;
};

SyncBlocker blockerOf(BlockerReason reason, const std::string& path, std::optional<std::int64_t> bytes) {
  SyncBlocker blocker;
  blocker.reason = reason;
  blocker.filePath = path;
  blocker.folderName = "Work";
  blocker.fileSize = bytes;
  return blocker;
}

TEST(PendingFiles, fileWithTwoReasons_countsOnce) {
  SyncHealthReport report;
  report.blockers = {blockerOf(BlockerReason::uploadError, "/a", 5), blockerOf(BlockerReason::notUploaded, "/a", 5),
                     blockerOf(BlockerReason::notUploaded, "/b", 7),
                     blockerOf(BlockerReason::unresolvedConflict, "/c", 9),
                     blockerOf(BlockerReason::notDownloaded, "/d", 9)};
  const std::vector<PendingFile> files = pendingFilesOf(report);
  ASSERT_THAT(files, SizeIs(2));
  EXPECT_EQ(files[0].filePath, "/a");
  EXPECT_EQ(files[0].bytes, 5);
  EXPECT_EQ(files[1].filePath, "/b");
}

TEST(PendingFiles, sizeThatIsNotKnown_isNothing) {
  SyncHealthReport report;
  report.blockers = {blockerOf(BlockerReason::notUploaded, "/a", std::nullopt)};
  EXPECT_EQ(pendingFilesOf(report).at(0).bytes, 0);
}

TEST(UploadStates, areReadFromTheDisk) {
  FakeFileSystem files;
  FakeValues uploaded;
  uploaded.isUploaded = true;
  FakeValues waiting;
  waiting.isUploaded = false;
  FakeValues refused;
  refused.isUploaded = true;
  refused.uploadingError = "No space in iCloud.";
  FakeValues plain;
  plain.isUbiquitousItem = false;
  files.addFolder("/w", {{"/w/uploaded", uploaded},
                         {"/w/waiting", waiting},
                         {"/w/refused", refused},
                         {"/w/plain", plain},
                         {"/w/unknown", FakeValues()},
                         {"/w/unreadable", std::nullopt}});
  EXPECT_THAT(uploadStates(files, {"/w/uploaded", "/w/waiting", "/w/refused", "/w/plain", "/w/unknown", "/w/unreadable",
                                   "/w/gone", "/elsewhere/gone"}),
              ElementsAre(UploadState::uploaded, UploadState::pending, UploadState::pending, UploadState::none,
                          UploadState::none, UploadState::none, UploadState::none, UploadState::none));
}

TEST_F(Uploads, nothingPending_isNothing) {
  look();
  EXPECT_EQ(record_.files, std::vector<FollowedUpload>());
  EXPECT_EQ(uploads().pendingFiles, 0);
  EXPECT_EQ(uploads().bytesPerSecond, std::nullopt);
  EXPECT_EQ(uploads().estimate, std::nullopt);
  EXPECT_EQ(quietFor(record_, now_), std::nullopt);
}

TEST_F(Uploads, fileNotRecordedYet_hasNoBeginning) {
  add("/a", 10);
  EXPECT_EQ(uploads().pendingFiles, 1);
  EXPECT_EQ(uploads().pendingBytes, 10);
  EXPECT_EQ(uploadAt("/a").pendingSince, std::nullopt);
  EXPECT_FALSE(uploadAt("/a").isStuck);
}

TEST_F(Uploads, pendingSince_isTheFirstLookAndStays) {
  add("/a", 10);
  look();
  lookAfter(90s);
  EXPECT_EQ(uploadAt("/a").pendingSince, kBegin);
}

TEST_F(Uploads, fileThatIsPendingOnceMore_beginsAnew) {
  add("/a", 10);
  add("/b", 10);
  look();
  upload("/a");
  lookAfter(10s);
  add("/a", 20);
  lookAfter(10s);
  EXPECT_EQ(uploadAt("/a").pendingSince, kBegin + 20s);
  EXPECT_EQ(uploadAt("/a").bytes, 20);
}

TEST_F(Uploads, fileThatIsRemoved_hasNotLeft) {
  add("/a", 10);
  add("/b", 10);
  look();
  remove("/a");
  lookAfter(10s);
  EXPECT_THAT(asked_, ElementsAre("/a"));
  EXPECT_THAT(record_.flows, IsEmpty());
}

TEST_F(Uploads, fileThatALookDoesNotReach_isFollowedOn) {
  add("/elsewhere/a", 10);
  add("/b", 10);
  look();
  remove("/elsewhere/a");
  states_["/elsewhere/a"] = UploadState::pending;
  lookAfter(10s);
  EXPECT_EQ(uploads().pendingFiles, 1);
  add("/elsewhere/a", 10);
  lookAfter(10s);
  EXPECT_EQ(uploadAt("/elsewhere/a").pendingSince, kBegin);
}

TEST_F(Uploads, rateAndEstimate_needThreeFilesOverAMinute) {
  for (int number = 0; number < 20; ++number) {
    add(fmt::format("/{:02}", number), 1000);
  }
  look();
  for (int number = 0; number < 3; ++number) {
    EXPECT_EQ(uploads().estimate, std::nullopt) << number;
    EXPECT_EQ(uploads().bytesPerSecond, std::nullopt) << number;
    upload(fmt::format("/{:02}", number));
    lookAfter(30s);
  }
  ASSERT_TRUE(uploads().estimate);
  EXPECT_NEAR(uploads().bytesPerSecond.value_or(0), 1000.0 / 30, 12);
  // 17 files of half a minute each.
  EXPECT_LT(uploads().estimate->earliest, now_ + 510s);
  EXPECT_GT(uploads().estimate->latest, now_ + 510s);
}

TEST_F(Uploads, estimate_goesAMinuteAfterTheLastFileLeft) {
  for (int number = 0; number < 20; ++number) {
    add(fmt::format("/{:02}", number), 1000);
  }
  look();
  for (int number = 0; number < 4; ++number) {
    upload(fmt::format("/{:02}", number));
    lookAfter(30s);
  }
  lookAfter(60s);
  EXPECT_TRUE(uploads().estimate);
  lookAfter(1s);
  EXPECT_EQ(uploads().estimate, std::nullopt);
  EXPECT_EQ(quietFor(record_, now_), 61s);
}

TEST_F(Uploads, fileLargerThanAllThatLeft_leavesNoEstimate) {
  for (int number = 0; number < 20; ++number) {
    add(fmt::format("/{:02}", number), 1000);
  }
  add("/large", 4001);
  look();
  for (int number = 0; number < 4; ++number) {
    upload(fmt::format("/{:02}", number));
    lookAfter(30s);
  }
  EXPECT_EQ(uploads().estimate, std::nullopt);
  upload("/19");
  lookAfter(30s);
  EXPECT_TRUE(uploads().estimate);
}

TEST_F(Uploads, moreThanAreFollowed_leaveNoEstimate) {
  for (std::size_t number = 0; number < UploadRecord::kMostFiles + 100; ++number) {
    add(fmt::format("/{:05}", number), 1000);
  }
  look();
  for (int number = 0; number < 4; ++number) {
    upload(fmt::format("/{:05}", number));
    lookAfter(30s);
  }
  EXPECT_THAT(record_.files, SizeIs(UploadRecord::kMostFiles));
  EXPECT_FALSE(record_.isWhole);
  EXPECT_EQ(uploads().estimate, std::nullopt);
  EXPECT_EQ(uploads().pendingFiles, 10'096);
}

TEST_F(Uploads, recordThatIsFull_keepsThoseThatWaitLongest) {
  add("/zz", 1);
  look();
  for (std::size_t number = 0; number < UploadRecord::kMostFiles + 100; ++number) {
    add(fmt::format("/{:05}", number), 1000);
  }
  lookAfter(10s);
  EXPECT_THAT(record_.files, SizeIs(UploadRecord::kMostFiles));
  EXPECT_EQ(uploadAt("/zz").pendingSince, kBegin);
}

TEST_F(Uploads, flows_areBoundedHoweverOftenAnybodyLooks) {
  add("/waits", 1);
  look();
  for (int number = 0; number < 20'000; ++number) {
    const std::string path = fmt::format("/{:05}", number);
    add(path, 1);
    lookAfter(100ms);
    upload(path);
    look();
  }
  EXPECT_LE(record_.flows.size(), 601U);
}

TEST_F(Uploads, clockThatIsSetBack_losesNoFile) {
  add("/a", 10);
  look();
  lookAfter(-2h);
  EXPECT_EQ(uploadAt("/a").pendingSince, kBegin - 2h);
  EXPECT_FALSE(uploadAt("/a").isStuck);
}

// Stuck

TEST_F(Uploads, fileLeftBehindByOthers_isStuckAfterTheirTime) {
  add("/stuck", 1'000'000);
  look();
  for (int minute = 0; minute < 40; ++minute) {
    const std::string path = fmt::format("/{:02}", minute);
    add(path, 100);
    lookAfter(30s);
    upload(path);
    lookAfter(30s);
    const bool isDue = now_ - kBegin > 1200s + 10s;
    EXPECT_EQ(uploadAt("/stuck").isStuck, isDue) << minute;
  }
  EXPECT_EQ(uploads().stuckFiles, 1);
}

TEST_F(Uploads, slowLargeFileAmongMovingOnes_isNotStuck) {
  // 5 GB take 14 hours on the slowest line that is nobody's fault.
  add("/large", 5'000'000'000);
  look();
  for (int minute = 0; minute < 600; ++minute) {
    const std::string path = fmt::format("/{:03}", minute);
    add(path, 100);
    lookAfter(30s);
    upload(path);
    lookAfter(30s);
  }
  EXPECT_FALSE(uploadAt("/large").isStuck);
}

TEST_F(Uploads, lastOfManyOnASlowLine_isNotStuck) {
  constexpr int kPhotos = 2000;
  for (int number = 0; number < kPhotos; ++number) {
    add(fmt::format("/{:04}", number), 3'000'000);
  }
  look();
  // 150 KB a second: 11 hours in all.
  for (int number = 0; number < kPhotos - 1; ++number) {
    upload(fmt::format("/{:04}", number));
    lookAfter(20s);
    ASSERT_EQ(uploads().stuckFiles, 0) << number;
  }
  EXPECT_EQ(uploads().pendingFiles, 1);
}

TEST_F(Uploads, nothingLeavesForTwentyMinutes_everythingThatWaitedIsStuck) {
  add("/a", 1);
  add("/b", 1'000'000'000);
  look();
  lookAfter(1199s);
  add("/late", 1);
  look();
  EXPECT_EQ(uploads().stuckFiles, 0);
  lookAfter(1s);
  EXPECT_EQ(uploads().stuckFiles, 2);
  EXPECT_FALSE(uploadAt("/late").isStuck);
}

TEST_F(Uploads, departureTwentyMinutesAgo_isRememberedBeyondTheWindow) {
  add("/a", 1'000'000'000);
  add("/b", 1);
  look();
  upload("/b");
  lookAfter(600s);
  lookAfter(1199s);
  EXPECT_FALSE(uploadAt("/a").isStuck);
  lookAfter(1s);
  EXPECT_TRUE(uploadAt("/a").isStuck);
}

TEST_F(Uploads, allUploadedAndMoreComes_forgetsHowItWent) {
  add("/a", 1);
  look();
  upload("/a");
  lookAfter(10s);
  EXPECT_EQ(record_, UploadRecord());
}

}  // namespace
}  // namespace cirrovane::test
