#include "coordinator/UploadWords.h"
#include "tests/coordinator/Builders.h"
#include "tests/coordinator/ManualDashboard.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const Time kNow = at(18, 25);

UploadStanding standingOf(std::int64_t files, std::int64_t bytes) {
  UploadStanding standing;
  standing.totals.generatedAt = kNow;
  standing.totals.pendingFiles = files;
  standing.totals.pendingBytes = bytes;
  standing.quietSince = kNow;
  return standing;
}

UploadStanding movingStanding() {
  UploadStanding standing = standingOf(12, 1'200'000'000);
  standing.lastLeft = kNow - 10s;
  standing.quietSince = standing.lastLeft;
  standing.totals.bytesPerSecond = 1e6;
  standing.totals.estimate = {kNow + 6min, kNow + 9min};
  return standing;
}

TEST(UploadSentence, nothingLeft_saysNothing) {
  EXPECT_EQ(uploadsSentence(standingOf(0, 0), kNow), "");
}

TEST(UploadSentence, moving_givesTheRangeAndTakesItBackOnceNothingMoves) {
  const UploadStanding standing = movingStanding();
  EXPECT_EQ(uploadsSentence(standing, kNow), "Left to upload: 12 files, 1.2 GB, about 6 to 9 min.");
  EXPECT_EQ(uploadsSentence(standing, kNow + 50s), "Left to upload: 12 files, 1.2 GB, about 5 to 9 min.");
  EXPECT_EQ(uploadsSentence(standing, kNow + 51s), "Left to upload: 12 files, 1.2 GB, no estimate yet.");
  EXPECT_EQ(uploadsSentence(standing, kNow + 110s), "Left to upload: 12 files, 1.2 GB, nothing has moved for 2 min.");
  EXPECT_TRUE(isMoving(standing, kNow + 109s));
  EXPECT_FALSE(isMoving(standing, kNow + 110s));
}

TEST(UploadSentence, stuckFiles_areToldApart) {
  UploadStanding standing = standingOf(3, 950'000);
  standing.totals.stuckFiles = 1;
  EXPECT_EQ(uploadsSentence(standing, kNow + 12min),
            "Left to upload: 3 files, 950 KB, nothing has moved for 12 min. 1 file is stuck.");
  standing.totals.stuckFiles = 2;
  EXPECT_THAT(uploadsSentence(standing, kNow), HasSubstr(" 2 files are stuck."));
}

TEST(UploadSentence, otherWords_areDueWhenTheyChange) {
  EXPECT_EQ(untilOtherWords(standingOf(0, 0), kNow), 2min);
  EXPECT_EQ(untilOtherWords(UploadStanding(), kNow), std::nullopt);
  EXPECT_EQ(untilOtherWords(movingStanding(), kNow), 51s);
  const UploadStanding standing = standingOf(1, 1);
  EXPECT_EQ(untilOtherWords(standing, kNow + 30s), 90s);
  EXPECT_EQ(untilOtherWords(standing, kNow + 12min + 20s), 40s);
  EXPECT_EQ(untilOtherWords(standing, kNow + 49h), 23h);
}

DiagnosticFinding finding(DiagnosticDomain domain, DiagnosticSeverity severity, const std::string& title) {
  DiagnosticFinding finding;
  finding.domain = domain;
  finding.severity = severity;
  finding.title = title;
  return finding;
}

TEST(UploadAdvice, findings_areThoseThatKeepFilesFromLeaving) {
  using enum DiagnosticSeverity;
  const std::vector<DiagnosticFinding> all = {
      finding(DiagnosticDomain::iCloud, warning, "Pending uploads"),
      finding(DiagnosticDomain::iCloud, error, "Unresolved conflicts"),
      finding(DiagnosticDomain::iCloud, ok, "bird daemon"),
      finding(DiagnosticDomain::iCloud, warning, "cloudd daemon"),
      finding(DiagnosticDomain::network, ok, "Default route"),
      finding(DiagnosticDomain::network, warning, "DNS resolution"),
      finding(DiagnosticDomain::storage, warning, "cloudd daemon"),
  };
  EXPECT_THAT(findingsAgainstUploads(all), ElementsAre(all[3], all[5]));
}

TEST(UploadAdvice, eachCause_hasItsStep) {
  using enum DiagnosticSeverity;
  const std::vector<DiagnosticFinding> network = {finding(DiagnosticDomain::network, warning, "Default route")};
  const std::vector<DiagnosticFinding> account = {
      finding(DiagnosticDomain::iCloud, warning, "iCloud account session unavailable")};
  const std::vector<DiagnosticFinding> sender = {finding(DiagnosticDomain::iCloud, warning, "bird daemon")};
  EXPECT_THAT(nextStepText("There isn’t enough space in your iCloud account.", network), HasSubstr("iCloud storage"));
  EXPECT_THAT(nextStepText("The request timed out.", network), HasSubstr("Connect this Mac"));
  EXPECT_THAT(nextStepText("The request timed out.", account), HasSubstr("signed in to iCloud"));
  EXPECT_THAT(nextStepText("", sender), HasSubstr("Copy the file"));
  EXPECT_THAT(nextStepText("The request timed out.", {}), HasSubstr("save it again"));
  EXPECT_THAT(nextStepText("", {}), HasSubstr("Leave this Mac on"));
}

TEST(UploadAdvice, everyStepThatTouchesTheFile_beginsWithACopy) {
  for (const std::string error : {"", "The request timed out."}) {
    const std::string step = nextStepText(error, {});
    EXPECT_LT(step.find("outside iCloud Drive"), std::min(step.find("save it"), step.find("restart"))) << step;
  }
}

class UploadFindingsTest : public Dashboard {};

TEST_F(UploadFindingsTest, healthyMac_hasNoneAgainstUploads) {
  cycle();
  EXPECT_THAT(findingsAgainstUploads(dashboard_->diagnostics()), IsEmpty());
}

TEST_F(UploadFindingsTest, brokenMac_hasEachCauseByTheNameThatTheDiagnosticsGiveIt) {
  system_.facts.hasUbiquityIdentityToken = false;
  commands_.answer(kRoute, {1, ""});
  commands_.answer(kReachability, "Unknown host\n");
  commands_.answer(kResolution, "");
  for (const char* name : {"bird", "cloudd", "fileproviderd"}) {
    commands_.answer(pgrep(name), {1, ""});
  }
  cycle();
  std::vector<std::string> titles;
  for (const Row& row : rowsOf(findingsAgainstUploads(dashboard_->diagnostics()))) {
    titles.push_back(row.title);
  }
  EXPECT_THAT(titles, UnorderedElementsAre("Default route", "iCloud host reachability", "DNS resolution",
                                           "iCloud account session unavailable", "bird daemon", "cloudd daemon",
                                           "fileproviderd"));
}

}  // namespace
}  // namespace cirrovane::test
