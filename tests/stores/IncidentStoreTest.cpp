#include "base/UUID.h"
#include "stores/IncidentStore.h"
#include "tests/stores/StoreFixture.h"

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {
namespace {

using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class IncidentStoreTest : public StoreTest {
 protected:
  IncidentStore open() { return {fileSystem_, storage_, clock_}; }
  std::string filePath() const { return storePath("incidents.json"); }
  Time at(int second) const { return Time(seconds(1'794'766'800 + second)); }

  static DiagnosticFinding finding(DiagnosticSeverity severity, const std::string& title,
                                   DiagnosticDomain domain = DiagnosticDomain::network,
                                   const std::string& detail = "detail") {
    return {UUIDGenerator()(), domain, severity, title, detail, Time()};
  }
  static DiagnosticFinding warning(const std::string& title) { return finding(DiagnosticSeverity::warning, title); }
  static DiagnosticFinding error(const std::string& title) { return finding(DiagnosticSeverity::error, title); }
  static std::vector<std::string> titlesOf(const std::vector<IncidentRecord>& records) {
    std::vector<std::string> titles;
    for (const IncidentRecord& record : records) {
      titles.push_back(record.title);
    }
    return titles;
  }
};

TEST_F(IncidentStoreTest, fingerprint_isDomainAndTitleInLowerCaseWithoutOuterBlanks) {
  EXPECT_EQ(fingerprintOf(warning(" \tDefault Route\n")), "network::default route");
  EXPECT_EQ(fingerprintOf(finding(DiagnosticSeverity::ok, "X", DiagnosticDomain::iCloud)), "icloud::x");
  EXPECT_EQ(fingerprintOf(warning(" \n")), "network::");
}

TEST_F(IncidentStoreTest, warningSeenThreeTimes_isOneRecord) {
  IncidentStore store = open();
  for (int second = 1; second <= 3; ++second) {
    store.merge({warning("Default route")}, at(second));
  }
  ASSERT_EQ(store.records().size(), 1U);
  EXPECT_EQ(store.records()[0].occurrences, 3);
  EXPECT_EQ(store.records()[0].firstSeen, at(1));
  EXPECT_EQ(store.records()[0].lastSeen, at(3));
  EXPECT_FALSE(store.records()[0].isResolved);
}

TEST_F(IncidentStoreTest, absentThenPresentAgain_resolvesAndReopens) {
  IncidentStore store = open();
  for (int second = 1; second <= 3; ++second) {
    store.merge({warning("Default route")}, at(second));
  }
  const UUID id = store.records()[0].id;
  store.merge({}, at(4));
  EXPECT_TRUE(store.records()[0].isResolved);
  EXPECT_EQ(store.records()[0].resolvedAt, at(4));
  EXPECT_EQ(store.records()[0].lastSeen, at(3));
  store.merge({warning("Default route")}, at(5));
  ASSERT_EQ(store.records().size(), 1U);
  EXPECT_EQ(store.records()[0].id, id);
  EXPECT_FALSE(store.records()[0].isResolved);
  EXPECT_EQ(store.records()[0].resolvedAt, std::nullopt);
  EXPECT_EQ(store.records()[0].occurrences, 4);
  EXPECT_EQ(store.records()[0].firstSeen, at(1));
}

TEST_F(IncidentStoreTest, notReached_leavesItsIncidentAsItIs) {
  IncidentStore store = open();
  store.merge({warning("Default route"), warning("DNS resolution")}, at(1));
  const std::vector<IncidentRecord> before = store.records();
  store.merge({warning("Default route")}, at(2), {{DiagnosticDomain::network, "DNS resolution"}});
  ASSERT_EQ(store.records().size(), 2U);
  EXPECT_EQ(store.records()[0].occurrences, 2);
  EXPECT_EQ(store.records()[1], before[1]);
  store.merge({}, at(3), {{DiagnosticDomain::network, " default ROUTE "}});
  EXPECT_FALSE(store.records()[0].isResolved);
  EXPECT_TRUE(store.records()[1].isResolved) << "what was reached and not found is over";
}

TEST_F(IncidentStoreTest, notReached_withItsLastValue_isNoNewObservation) {
  IncidentStore store = open();
  store.merge({warning("Default route")}, at(1));
  const std::vector<IncidentRecord> before = store.records();
  const std::vector<FindingKey> notReached = {{DiagnosticDomain::network, "Default route"},
                                              {DiagnosticDomain::network, "DNS resolution"}};
  store.merge({warning("Default route"), warning("DNS resolution")}, at(2), notReached);
  EXPECT_EQ(store.records(), before);
}

TEST_F(IncidentStoreTest, notReached_afterItWasResolved_staysResolved) {
  IncidentStore store = open();
  store.merge({warning("Default route")}, at(1));
  store.merge({}, at(2));
  const std::vector<IncidentRecord> before = store.records();
  store.merge({}, at(3), {{DiagnosticDomain::network, "Default route"}});
  EXPECT_EQ(store.records(), before);
}

TEST_F(IncidentStoreTest, resolvedTwice_keepsTheFirstTime) {
  IncidentStore store = open();
  store.merge({warning("a")}, at(1));
  store.merge({}, at(2));
  store.merge({}, at(3));
  EXPECT_EQ(store.records()[0].resolvedAt, at(2));
}

TEST_F(IncidentStoreTest, titlesThatDifferInCaseAndLineEnd_shareARecordWithTheLatestTitle) {
  IncidentStore store = open();
  store.merge({warning("Disk Low")}, at(1));
  store.merge({warning("disk low\n")}, at(2));
  EXPECT_THAT(titlesOf(store.records()), ElementsAre("disk low\n"));
  EXPECT_EQ(store.records()[0].occurrences, 2);
}

TEST_F(IncidentStoreTest, sameTitleInOtherDomain_isAnotherRecord) {
  IncidentStore store = open();
  store.merge({warning("a"), finding(DiagnosticSeverity::warning, "a", DiagnosticDomain::storage)}, at(1));
  EXPECT_EQ(store.records().size(), 2U);
}

TEST_F(IncidentStoreTest, infoAndOk_neitherMakeNorKeepAnIncident) {
  IncidentStore store = open();
  store.merge({finding(DiagnosticSeverity::info, "a"), finding(DiagnosticSeverity::ok, "b")}, at(1));
  EXPECT_THAT(store.records(), IsEmpty());
  store.merge({warning("a")}, at(2));
  store.merge({finding(DiagnosticSeverity::info, "a")}, at(3));
  EXPECT_TRUE(store.records()[0].isResolved);
  EXPECT_EQ(store.records()[0].lastSeen, at(2));
}

TEST_F(IncidentStoreTest, twoNewFindingsOfOneFingerprint_makeTwoRecords) {
  IncidentStore store = open();
  store.merge({warning("a"), warning("A")}, at(1));
  ASSERT_EQ(store.records().size(), 2U);
  EXPECT_EQ(store.records()[0].occurrences, 1);
  EXPECT_EQ(store.records()[1].occurrences, 1);
}

TEST_F(IncidentStoreTest, twoKnownFindingsOfOneFingerprint_countTwice) {
  IncidentStore store = open();
  store.merge({warning("a")}, at(1));
  store.merge({warning("a"), error("A")}, at(2));
  ASSERT_EQ(store.records().size(), 1U);
  EXPECT_EQ(store.records()[0].occurrences, 3);
  EXPECT_EQ(store.records()[0].severity, DiagnosticSeverity::error);
  EXPECT_EQ(store.records()[0].title, "A");
}

TEST_F(IncidentStoreTest, twoStoredRecordsOfOneFingerprint_theLaterPositionIsUpdated) {
  IncidentStore store = open();
  store.merge({finding(DiagnosticSeverity::warning, "a", DiagnosticDomain::network, "first"),
               finding(DiagnosticSeverity::warning, "a", DiagnosticDomain::network, "second")},
              at(1));
  const UUID later = store.records()[1].id;
  store.merge({finding(DiagnosticSeverity::warning, "a", DiagnosticDomain::network, "third")}, at(2));
  ASSERT_EQ(store.records().size(), 2U);
  EXPECT_EQ(store.records()[0].id, later);
  EXPECT_EQ(store.records()[0].occurrences, 2);
  EXPECT_EQ(store.records()[1].occurrences, 1);
  // Their fingerprint is current, so neither is resolved.
  EXPECT_FALSE(store.records()[1].isResolved);
}

TEST_F(IncidentStoreTest, merge_ordersActiveThenSeverityThenLastSeen) {
  IncidentStore store = open();
  store.merge({warning("old warning"), error("old error"), error("gone")}, at(1));
  store.merge({warning("old warning"), error("old error"), warning("new warning"), error("new error")}, at(2));
  store.merge({warning("new warning"), error("new error"), error("old error")}, at(3));
  EXPECT_THAT(titlesOf(store.records()), ElementsAre("old error", "new error", "new warning", "gone", "old warning"));
}

TEST_F(IncidentStoreTest, equalRecords_keepTheirOrder) {
  IncidentStore store = open();
  store.merge({warning("c"), warning("a"), warning("b")}, at(1));
  EXPECT_THAT(titlesOf(store.records()), ElementsAre("c", "a", "b"));
  store.merge({warning("a"), warning("b"), warning("c")}, at(2));
  EXPECT_THAT(titlesOf(store.records()), ElementsAre("c", "a", "b"));
}

TEST_F(IncidentStoreTest, record801_dropsTheLastInOrder) {
  IncidentStore store = open();
  store.merge({warning("resolved early")}, at(1));
  store.merge({warning("resolved late")}, at(2));
  std::vector<DiagnosticFinding> findings;
  for (int number = 0; number < 799; ++number) {
    findings.push_back(warning("w" + std::to_string(number)));
  }
  store.merge(findings, at(3));
  ASSERT_EQ(store.records().size(), IncidentStore::kMaximumRecords);
  EXPECT_EQ(store.records().back().title, "resolved late");
  EXPECT_EQ(open().records().size(), IncidentStore::kMaximumRecords);
}

TEST_F(IncidentStoreTest, markResolved_setsTheTimeAndKeepsThePlace) {
  IncidentStore store = open();
  store.merge({error("a"), warning("b")}, at(1));
  store.markResolved(store.records()[0]);
  EXPECT_THAT(titlesOf(store.records()), ElementsAre("a", "b"));
  EXPECT_TRUE(store.records()[0].isResolved);
  EXPECT_EQ(store.records()[0].resolvedAt, clock_.now());
  EXPECT_TRUE(open().records()[0].isResolved);
}

TEST_F(IncidentStoreTest, reopen_clearsTheTimeAndLeavesTheRest) {
  IncidentStore store = open();
  store.merge({error("a")}, at(1));
  store.merge({}, at(2));
  IncidentRecord expected = store.records()[0];
  store.reopen(expected);
  expected.isResolved = false;
  expected.resolvedAt.reset();
  EXPECT_EQ(store.records()[0], expected);
  EXPECT_EQ(open().records()[0], expected);
  store.merge({}, at(3));
  EXPECT_TRUE(store.records()[0].isResolved);
  EXPECT_EQ(store.records()[0].resolvedAt, at(3));
}

TEST_F(IncidentStoreTest, markResolvedOfARecordNoLongerStored_changesAndWritesNothing) {
  IncidentStore store = open();
  store.merge({error("a")}, at(1));
  IncidentRecord gone = store.records()[0];
  gone.id = UUIDGenerator()();
  writeFile(filePath(), "marker");
  const std::vector<IncidentRecord> before = store.records();
  store.markResolved(gone);
  store.reopen(gone);
  EXPECT_EQ(store.records(), before);
  EXPECT_EQ(readFile(filePath()), "marker");
}

TEST_F(IncidentStoreTest, observers_areToldOnceAMergeAndBeforeIt) {
  IncidentStore store = open();
  std::vector<std::size_t> sizes;
  const Subscription subscription = store.publishedRecords().observe([&](const std::vector<IncidentRecord>& next) {
    sizes.push_back(store.records().size());
    sizes.push_back(next.size());
  });
  store.merge({error("a"), error("b")}, at(1));
  EXPECT_THAT(sizes, ElementsAre(0, 2));
}

TEST_F(IncidentStoreTest, activeRecord_hasNoResolvedAtKeyAndKeysAreSorted) {
  IncidentStore store = open();
  store.merge({error("a")}, at(1));
  EXPECT_FALSE(nlohmann::json::parse(readFile(filePath()))[0].contains("resolvedAt"));
  store.merge({}, at(2));
  const std::string text = readFile(filePath());
  std::size_t position = 0;
  for (const char* key : {"domain", "fingerprint", "firstSeen", "id", "isResolved", "lastDetail", "lastSeen",
                          "occurrences", "resolvedAt", "severity", "title"}) {
    const std::size_t found = text.find("\"" + std::string(key) + "\":");
    ASSERT_NE(found, std::string::npos) << key;
    EXPECT_GT(found, position) << key;
    position = found;
  }
}

TEST_F(IncidentStoreTest, storedOrder_isTakenAsItIs) {
  IncidentStore store = open();
  store.merge({error("a"), warning("b")}, at(1));
  store.markResolved(store.records()[0]);
  EXPECT_EQ(open().records(), store.records());
}

}  // namespace
}  // namespace cirrovane::test
