#include "tests/diagnostics/MachineFixture.h"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using std::chrono::microseconds;
using std::chrono::seconds;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class SystemFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const { return service().systemFindings(report_); }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }
  /// The row for a report that is so old.
  std::optional<Row> freshness(microseconds age) {
    report_.generatedAt = clock_.now() - age;
    return row("Scan freshness");
  }
};

const Row kRecent = {ok, "Scan freshness", "Latest scan is recent (within 5 minutes)."};
const Row kOld = {warning, "Scan freshness",
                  "Latest scan is older than 5 minutes. Run a fresh scan before high-stakes decisions."};
const Row kSystemScope = {info, "Diagnostic scope",
                          "Checks are based on observable local signals and selected probes; this is not a complete "
                          "kernel-level trace of every subsystem."};

TEST_F(SystemFindings, healthyMac_givesThreeRowsInOrder) {
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(kRecent, Row{ok, "Sleep/shutdown risk", "No pending uploads detected in current scan."},
                          kSystemScope));
}

TEST_F(SystemFindings, everythingWrong_givesThreeRowsInOrder) {
  report_.generatedAt -= seconds(3600);
  report_.metrics.pendingUploads = 2;
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(kOld,
                          Row{warning, "Sleep/shutdown risk",
                              "Pending uploads exist. Avoid sleep/shutdown until trust returns safe."},
                          kSystemScope));
}

TEST_F(SystemFindings, everyFinding_isOfSystemAndOfNow) {
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::system)));
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::observedAt, clock_.now())));
}

TEST_F(SystemFindings, noCommandIsRun) {
  findings();
  EXPECT_THAT(commands_.ran(), IsEmpty());
}

TEST_F(SystemFindings, scan_upTo300SecondsOld_isRecent) {
  EXPECT_EQ(freshness(seconds(0)), kRecent);
  EXPECT_EQ(freshness(seconds(299)), kRecent);
  EXPECT_EQ(freshness(seconds(300)), kRecent);
}

TEST_F(SystemFindings, scan_olderThan300Seconds_isOld) {
  EXPECT_EQ(freshness(seconds(300) + microseconds(1)), kOld);
  EXPECT_EQ(freshness(seconds(301)), kOld);
  EXPECT_EQ(freshness(std::chrono::years(50)), kOld);
}

TEST_F(SystemFindings, scan_datedInTheFuture_isRecent) {
  EXPECT_EQ(freshness(seconds(-1)), kRecent);
  EXPECT_EQ(freshness(std::chrono::years(-50)), kRecent);
}

TEST_F(SystemFindings, sleepRisk_beginsAtOnePendingUpload) {
  report_.metrics.pendingUploads = 0;
  EXPECT_EQ(row("Sleep/shutdown risk"),
            (Row{ok, "Sleep/shutdown risk", "No pending uploads detected in current scan."}));
  report_.metrics.pendingUploads = 1;
  EXPECT_EQ(row("Sleep/shutdown risk"), (Row{warning, "Sleep/shutdown risk",
                                             "Pending uploads exist. Avoid sleep/shutdown until trust returns safe."}));
}

}  // namespace
}  // namespace cirrovane::test
