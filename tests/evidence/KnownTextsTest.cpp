#include "core/TrustScoring.h"
#include "diagnostics/PlatformDiagnosticsService.h"
#include "evidence/KnownTexts.h"
#include "evidence/Redactor.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

std::string systemWords(std::string_view text) {
  const auto found = findNameInSystemWords(text);
  return !found ? "unknown" : found->place == NamePlace::none ? "no name" : std::string(found->name);
}

TEST(KnownTexts, systemWords_areTakenApartAroundTheirName) {
  EXPECT_EQ(
      systemWords("“a.pdf” couldn’t be uploaded to iCloud because there isn’t enough space in your iCloud account."),
      "a.pdf");
  EXPECT_EQ(systemWords("The file “” couldn’t be opened."), "");
  EXPECT_EQ(systemWords("The file “x” couldn’t be opened.” couldn’t be opened."), "x” couldn’t be opened.");
  EXPECT_EQ(systemWords("The file couldn’t be uploaded because the request timed out."), "no name");
  EXPECT_EQ(systemWords("The operation couldn’t be completed. (NSPOSIXErrorDomain error 28.)"), "no name");
}

TEST(KnownTexts, otherWords_areUnknown) {
  for (const char* text :
       {"", "a.pdf", "“a.pdf” couldn’t be eaten.", "Secret file couldn’t be uploaded.", "“a couldn’t be uploaded.",
        "The operation couldn’t be completed. (Secret error 28.)", "“a” of Anna couldn’t be uploaded.",
        "The operation couldn’t be completed. (NSPOSIXErrorDomain error twelve.)"}) {
    EXPECT_EQ(systemWords(text), "unknown") << text;
  }
}

TEST(KnownTexts, numbers_areNoNames) {
  const KnownText known{"{} GB free of {} GB."};
  EXPECT_TRUE(findName(known, "12.5 GB free of 494 GB."));
  EXPECT_TRUE(findName(known, "-1 GB free of 0.0 GB."));
  for (const char* text : {"a GB free of 1 GB.", " GB free of 1 GB.", "1 GB free of 1. GB.", "1 GB free of 1 GB. a"}) {
    EXPECT_FALSE(findName(known, text)) << text;
  }
}

TEST(KnownTexts, everySummaryAndActionOfTheScoring_isKnown) {
  Redactor redactor(Redaction::strict, {});
  for (unsigned combination = 0; combination < 256; ++combination) {
    std::vector<SyncBlocker> blockers;
    for (const BlockerReason reason : kAllBlockerReasons) {
      if ((combination >> static_cast<unsigned>(reason) & 1U) != 0) {
        blockers.emplace_back().reason = reason;
      }
    }
    ScanMetrics metrics;
    metrics.notDownloaded = 3;
    metrics.pendingUploads = static_cast<std::int64_t>(combination & 1U);
    for (const HealthState state : {HealthState::safe, HealthState::warning, HealthState::danger}) {
      const std::string summary = summaryText(state, blockers, metrics);
      std::string kept = summary;
      redactor.redactSummary(kept);
      EXPECT_EQ(kept, summary);
    }
    for (const RecommendedAction& action : recommendedActions(blockers, metrics)) {
      RecommendedAction kept = action;
      redactor.redact(kept);
      EXPECT_EQ(kept, action);
    }
  }
}

}  // namespace
}  // namespace cirrovane::test
