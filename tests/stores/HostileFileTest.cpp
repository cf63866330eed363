// Files that no store of ours wrote: each is an empty list, at once.

#include "stores/AcknowledgementStore.h"
#include "stores/FileCountStore.h"
#include "stores/IncidentStore.h"
#include "stores/ScanHistoryStore.h"
#include "stores/UploadsStore.h"
#include "stores/WatchlistStore.h"
#include "tests/stores/StoreFixture.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

const std::string kID = R"("id": "6F9619FF-8B86-D011-B42D-00CF4FC964FF")";

std::string snapshotWith(const std::string& timestamp, const std::string& score) {
  return "[{" + kID + R"(, "timestamp": )" + timestamp + R"(, "score": )" + score +
         R"(, "status": "safe", "safeToClose": true, "blockerCount": 0, "pendingUploads": 0}])";
}

constexpr std::array kFiles = {"watchlist.json",    "history.json",  "incidents.json",
                               "acknowledged.json", "coverage.json", "uploads.json"};

struct HostileFile {
  std::string name;
  std::function<void(const std::string& path)> make;
};

HostileFile withText(std::string name, std::string text) {
  return {std::move(name), [text = std::move(text)](const std::string& path) { writeFile(path, text); }};
}

std::vector<HostileFile> hostileFiles() {
  const std::string nested = std::string(100'000, '[');
  const std::string good = snapshotWith("\"2026-11-15T18:21:10Z\"", "5");
  return {
      withText("empty", ""),
      withText("truncated", good.substr(0, good.size() / 2)),
      withText("lastByteMissing", good.substr(0, good.size() - 1)),
      withText("textBehindTheDocument", good + "x"),
      withText("nestedArrays", nested),
      withText("nestedArraysClosed", nested + std::string(100'000, ']')),
      withText("nestedObjects",
               [] {
                 std::string text;
                 for (int depth = 0; depth < 100'000; ++depth) {
                   text += "{\"a\":";
                 }
                 return text;
               }()),
      withText("nulBytes", std::string(1'000, '\0')),
      withText("nulInsideAString", "[{" + kID + std::string(", \"name\": \"a\0b\", \"path\": \"/x\"}]", 31)),
      withText("invalidUTF8", "[{" + kID + ", \"name\": \"\xff\", \"path\": \"/x\"}]"),
      withText("objectInPlaceOfTheArray", "{}"),
      withText("arrayOfNulls", "[null]"),
      withText("wrongType", snapshotWith("\"2026-11-15T18:21:10Z\"", "\"5\"")),
      withText("numberAsDate", snapshotWith("5", "5")),
      withText("monthOutOfRange", snapshotWith("\"2026-13-15T18:21:10Z\"", "5")),
      withText("dayOutOfRange", snapshotWith("\"2026-02-30T18:21:10Z\"", "5")),
      withText("yearOutOfRange", snapshotWith("\"99999-11-15T18:21:10Z\"", "5")),
      withText("numberBeyond64Bits", snapshotWith("\"2026-11-15T18:21:10Z\"", "9223372036854775808")),
      withText("hugeNumber", snapshotWith("\"2026-11-15T18:21:10Z\"", "1e999")),
      withText("fraction", snapshotWith("\"2026-11-15T18:21:10Z\"", "5.5")),
      withText("unknownRawValue", "[{" + kID +
                                      R"(, "timestamp": "2026-11-15T18:21:10Z", "score": 5, "status": "Safe",)" +
                                      R"( "safeToClose": true, "blockerCount": 0, "pendingUploads": 0}])"),
      withText("badIdentifier", R"([{"id": "not one", "name": "a", "path": "/x"}])"),
      {"oneGigabyte",
       [](const std::string& path) {
         writeFile(path, "[");
         std::filesystem::resize_file(path, std::uintmax_t{1} << 30U);
       }},
      {"fifo",
       [](const std::string& path) {
         makeFolder(std::filesystem::path(path).parent_path());
         ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
       }},
      {"folder", [](const std::string& path) { makeFolder(path); }},
  };
}

SyncHealthReport pendingReport() {
  SyncHealthReport report;
  SyncBlocker& blocker = report.blockers.emplace_back();
  blocker.reason = BlockerReason::notUploaded;
  blocker.filePath = "/x/a";
  return report;
}

class HostileFileTest : public StoreTest, public testing::WithParamInterface<HostileFile> {
 protected:
  template <class Check>
  static void within(std::chrono::milliseconds limit, const Check& check) {
    const auto start = std::chrono::steady_clock::now();
    check();
    EXPECT_LT(std::chrono::steady_clock::now() - start, limit);
  }
};

TEST_P(HostileFileTest, everyStore_startsEmptyAtOnceAndSavesAgain) {
  for (const char* name : kFiles) {
    GetParam().make(storePath(name));
  }
  // A second each on a busy machine under a sanitizer too; by itself it is a hundredth of that.
  within(std::chrono::seconds(3), [&] {
    WatchlistStore watchlist(fileSystem_, storage_, collation_);
    EXPECT_TRUE(watchlist.folders().empty());
    ScanHistoryStore history(fileSystem_, storage_);
    EXPECT_TRUE(history.snapshots().empty());
    IncidentStore incidents(fileSystem_, storage_, clock_);
    EXPECT_TRUE(incidents.records().empty());
    const AcknowledgementStore acknowledgements(fileSystem_, storage_, clock_);
    EXPECT_TRUE(acknowledgements.current().empty());
    const FileCountStore fileCounts(fileSystem_, storage_, clock_);
    EXPECT_TRUE(fileCounts.most().empty());
    const UploadsStore uploads(fileSystem_, storage_);
    EXPECT_EQ(uploads.recordAfter(SyncHealthReport()), UploadRecord());

    watchlist.addFolder("/x/a");
    history.record(SyncHealthReport());
    incidents.merge({}, clock_.now());
    EXPECT_EQ(acknowledgements.acknowledge({"/x/a"}, std::nullopt), std::nullopt);
    EXPECT_EQ(fileCounts.beginAnew({{"/x/a", 7}}), std::nullopt);
    EXPECT_EQ(uploads.note(pendingReport()).failure, std::nullopt);
    EXPECT_EQ(watchlist.saveFailure(), std::nullopt);
    EXPECT_EQ(history.saveFailure(), std::nullopt);
    EXPECT_EQ(incidents.saveFailure(), std::nullopt);
  });
  EXPECT_EQ(WatchlistStore(fileSystem_, storage_, collation_).folders().size(), 1U);
  EXPECT_EQ(ScanHistoryStore(fileSystem_, storage_).snapshots().size(), 1U);
  EXPECT_EQ(AcknowledgementStore(fileSystem_, storage_, clock_).current().size(), 1U);
  EXPECT_EQ(FileCountStore(fileSystem_, storage_, clock_).most().size(), 1U);
  EXPECT_EQ(UploadsStore(fileSystem_, storage_).recordAfter(pendingReport()).files.size(), 1U);
  for (const char* name : kFiles) {
    EXPECT_TRUE(std::filesystem::exists(storePath(name) + ".unreadable")) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Files, HostileFileTest, testing::ValuesIn(hostileFiles()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace cirrovane::test
