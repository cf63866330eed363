#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/DiagnosticsDomainViewModel.h"
#include "ui/viewmodels/Text.h"

#include <QAbstractItemModelTester>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

class DiagnosticsDomainViewModelTest : public PageTest {
 protected:
  DiagnosticsDomainViewModelTest() { page_->setDomain("Network"); }

  static DiagnosticFinding finding(DiagnosticDomain domain, DiagnosticSeverity severity, std::string title,
                                   std::string detail = "Detail.") {
    return {UUIDGenerator()(), domain, severity, std::move(title), std::move(detail), at(18, 20)};
  }
  static DiagnosticFinding network(DiagnosticSeverity severity, std::string title, std::string detail = "Detail.") {
    return finding(DiagnosticDomain::network, severity, std::move(title), std::move(detail));
  }
  void publish(const std::vector<DiagnosticFinding>& findings) {
    setPublished(dashboard_->publishedDiagnostics(), findings);
    catchUp();
  }

  static FindingRow row(const QString& title, const QString& severity, Tone tone, const QString& detail = "Detail.") {
    return {.title = title, .detail = detail, .severity = severity, .tone = tone};
  }

  std::unique_ptr<DiagnosticsDomainViewModel> page_ = open<DiagnosticsDomainViewModel>();
  QAbstractItemModelTester checks_{page_->findings(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(DiagnosticsDomainViewModelTest, beforeTheFirstCycle_nothingIsThereYet) {
  EXPECT_EQ(page_->lastUpdated(), "Not yet");
  EXPECT_TRUE(page_->isEmpty());
}

TEST_F(DiagnosticsDomainViewModelTest, title_isTheDomainsOwn) {
  for (const auto& [domain, text] : kDiagnosticDomains) {
    page_->setDomain(toQString(text));
    EXPECT_EQ(page_->title().toStdString(), std::string(text) + " Diagnostics");
  }
}

TEST_F(DiagnosticsDomainViewModelTest, domain_unknown_isNotTaken) {
  page_->setDomain("network");
  EXPECT_EQ(page_->domain(), "Network");
}

TEST_F(DiagnosticsDomainViewModelTest, severities_haveTheirWordsAndColours) {
  publish({network(DiagnosticSeverity::error, "A"), network(DiagnosticSeverity::warning, "B"),
           network(DiagnosticSeverity::info, "C"), network(DiagnosticSeverity::ok, "D")});
  EXPECT_THAT(rowsOf(*page_->findings()),
              ElementsAre(row("A", "Error", Tone::Critical), row("B", "Warning", Tone::Warning),
                          row("C", "Info", Tone::Info), row("D", "OK", Tone::Good)));
  EXPECT_FALSE(page_->isEmpty());
}

TEST_F(DiagnosticsDomainViewModelTest, findings_areNeverSorted) {
  publish({network(DiagnosticSeverity::ok, "Z"), network(DiagnosticSeverity::error, "M"),
           network(DiagnosticSeverity::warning, "A")});
  EXPECT_THAT(rowsOf(*page_->findings()), ElementsAre(row("Z", "OK", Tone::Good), row("M", "Error", Tone::Critical),
                                                      row("A", "Warning", Tone::Warning)));
}

TEST_F(DiagnosticsDomainViewModelTest, findings_ofOtherDomains_areNotShown) {
  publish({finding(DiagnosticDomain::storage, DiagnosticSeverity::error, "Free space"),
           network(DiagnosticSeverity::ok, "Default route")});
  EXPECT_THAT(rowsOf(*page_->findings()), ElementsAre(row("Default route", "OK", Tone::Good)));
  page_->setDomain("Storage");
  EXPECT_THAT(rowsOf(*page_->findings()), ElementsAre(row("Free space", "Error", Tone::Critical)));
  page_->setDomain("Power");
  EXPECT_TRUE(page_->isEmpty());
}

TEST_F(DiagnosticsDomainViewModelTest, equalTitles_areRowsOfTheirOwn) {
  publish({network(DiagnosticSeverity::error, "Folder", "One."), network(DiagnosticSeverity::ok, "Folder", "Two.")});
  EXPECT_THAT(rowsOf(*page_->findings()),
              ElementsAre(row("Folder", "Error", Tone::Critical, "One."), row("Folder", "OK", Tone::Good, "Two.")));
}

TEST_F(DiagnosticsDomainViewModelTest, refresh_withTheSameFindings_changesNoRow) {
  publish({network(DiagnosticSeverity::warning, "A"), network(DiagnosticSeverity::ok, "B")});
  const RowSignals changes(*page_->findings());
  publish({network(DiagnosticSeverity::warning, "A"), network(DiagnosticSeverity::ok, "B")});
  EXPECT_EQ(changes.total(), 0);
  publish({network(DiagnosticSeverity::warning, "A", "Another detail."), network(DiagnosticSeverity::ok, "B")});
  EXPECT_EQ(changes.total(), 1);
}

TEST_F(DiagnosticsDomainViewModelTest, hostileTexts_areMadeHarmless) {
  publish({network(DiagnosticSeverity::warning, "<b>A\n</b>", "\x1b[31m \xe2\x80\xae" + std::string(5'000, 'x'))});
  const FindingRow shown = page_->findings()->row(0);
  EXPECT_EQ(shown.title, "<b>A\\n</b>");
  EXPECT_EQ(shown.detail.toStdString(), "\\x1b[31m \\u{202e}" + std::string(5'000, 'x'));
}

TEST_F(DiagnosticsDomainViewModelTest, toolsOutput_losesItsLastLineBreak) {
  publish({network(DiagnosticSeverity::info, "Swap usage", "total = 2048.00M\n")});
  EXPECT_THAT(rowsOf(*page_->findings()), ElementsAre(row("Swap usage", "Info", Tone::Info, "total = 2048.00M")));
}

TEST_F(DiagnosticsDomainViewModelTest, rescan_duringACycle_changesNothing) {
  page_->rescan();
  EXPECT_TRUE(page_->isScanning());
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_FALSE(page_->isScanning());
  EXPECT_EQ(dashboard_->historyStore().snapshots().size(), 1U);
}

TEST_F(DiagnosticsDomainViewModelTest, cycle_isToldWithItsTime) {
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_EQ(page_->lastUpdated(), "6:25:00 PM");
  EXPECT_THAT(dashboard_->diagnostics(DiagnosticDomain::network), testing::SizeIs(page_->findings()->count()));
  EXPECT_FALSE(page_->isEmpty());
}

}  // namespace
}  // namespace cirrovane::test
