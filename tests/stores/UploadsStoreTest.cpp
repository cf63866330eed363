#include "stores/UploadsStore.h"
#include "tests/stores/StoreFixture.h"
#include "tests/support/ICloudAttribute.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

class UploadsStoreTest : public StoreTest {
 protected:
  UploadsStoreTest() { makeICloudDrive(); }

  std::string fileAt(const std::string& name, const std::string& state) const {
    const std::string path = iCloudDrivePath() + "/" + name;
    writeFile(path, "content");
    setICloudAttribute(path, state);
    return path;
  }
  SyncHealthReport reportOf(const std::vector<std::string>& paths) {
    SyncHealthReport report;
    report.generatedAt = clock_.now();
    for (const std::string& path : paths) {
      SyncBlocker& blocker = report.blockers.emplace_back();
      blocker.reason = BlockerReason::notUploaded;
      blocker.filePath = path;
      blocker.fileSize = 7;
    }
    return report;
  }
  UploadsStore store() const { return UploadsStore(fileSystem_, storage_); }
};

TEST_F(UploadsStoreTest, noFile_isNothing) {
  EXPECT_THAT(store().recordAfter(reportOf({})).files, IsEmpty());
}

TEST_F(UploadsStoreTest, pendingFile_isRecordedForOtherPrograms) {
  const std::string path = fileAt("a", "isUploaded=false");
  EXPECT_EQ(store().note(reportOf({path})).failure, std::nullopt);
  const Time first = clock_.now();
  clock_.advance(90s);
  const UploadRecord record = store().note(reportOf({path})).record;
  ASSERT_THAT(record.files, SizeIs(1));
  EXPECT_EQ(record.files[0].filePath, path);
  EXPECT_EQ(record.files[0].bytes, 7);
  EXPECT_EQ(record.files[0].pendingSince, first);
}

TEST_F(UploadsStoreTest, looking_writesNothing) {
  store().recordAfter(reportOf({fileAt("a", "isUploaded=false")}));
  EXPECT_FALSE(std::filesystem::exists(storePath("uploads.json")));
}

TEST_F(UploadsStoreTest, nothingPendingNorBefore_writesNothing) {
  EXPECT_EQ(store().note(reportOf({})).failure, std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(storePath("uploads.json")));
}

TEST_F(UploadsStoreTest, uploadedFile_hasLeft) {
  const std::string path = fileAt("a", "isUploaded=false");
  const std::string other = fileAt("b", "isUploaded=false");
  static_cast<void>(store().note(reportOf({path, other})));
  setICloudAttribute(path, "isUploaded=true");
  clock_.advance(10s);
  const UploadRecord record = store().note(reportOf({other})).record;
  EXPECT_THAT(record.files, SizeIs(1));
  ASSERT_THAT(record.flows, SizeIs(1));
  EXPECT_EQ(record.flows[0].filesLeft, 1);
  EXPECT_EQ(record.flows[0].bytesLeft, 7);
}

TEST_F(UploadsStoreTest, fullStore_staysWithinItsBounds) {
  std::vector<std::string> paths;
  for (int number = 0; number < 12'000; ++number) {
    paths.push_back(iCloudDrivePath() + fmt::format("/{:05}", number));
  }
  EXPECT_THAT(store().note(reportOf(paths)).record.files, SizeIs(UploadRecord::kMostFiles));
  const auto stored = nlohmann::json::parse(readFile(storePath("uploads.json")));
  EXPECT_THAT(stored.at("files"), SizeIs(UploadRecord::kMostFiles));
}

TEST_F(UploadsStoreTest, folderThatCannotBeMade_isAFailureAndStillARecord) {
  writeFile(homePath() + "/Library/Application Support", "in the way");
  const UploadsStore::Look look = store().note(reportOf({fileAt("a", "isUploaded=false")}));
  EXPECT_TRUE(look.failure);
  EXPECT_THAT(look.record.files, SizeIs(1));
}

TEST_F(UploadsStoreTest, senselessFile_isKeptAside) {
  for (const char* text : {"", "[]", R"({"files": 1})", R"({"files": [], "flows": []})"}) {
    writeFile(storePath("uploads.json"), text);
    EXPECT_EQ(store().note(reportOf({fileAt("a", "isUploaded=false")})).failure, std::nullopt);
    EXPECT_EQ(readFile(storePath("uploads.json.unreadable")), text);
    std::filesystem::remove(storePath("uploads.json"));
  }
}

TEST_F(UploadsStoreTest, hostileNumbers_neitherCrashNorPromise) {
  writeFile(storePath("uploads.json"), R"({"files": [
    {"filePath": "/a", "bytes": 9223372036854775807, "pendingSince": "9999-12-31T23:59:59Z",
     "pendingBytesThen": -9223372036854775808},
    {"filePath": "/a", "bytes": -1, "pendingSince": "0000-01-01T00:00:00Z", "pendingBytesThen": 0}],
    "flows": [{"at": "9999-12-31T23:59:59Z", "filesLeft": 9223372036854775807, "bytesLeft": 9223372036854775807,
               "bytesCame": -1},
              {"at": "0000-01-01T00:00:00Z", "filesLeft": -5, "bytesLeft": -5, "bytesCame": 5}], "isWhole": true})");
  const SyncHealthReport report = reportOf({"/a"});
  const UploadRecord record = store().recordAfter(report);
  const PendingUploads uploads = pendingUploads(record, pendingFilesOf(report), report.generatedAt);
  EXPECT_EQ(uploads.estimate, std::nullopt);
  EXPECT_EQ(uploads.pendingFiles, 1);
}

}  // namespace
}  // namespace cirrovane::test
