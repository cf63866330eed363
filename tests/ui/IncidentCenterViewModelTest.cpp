#include "tests/ui/PageFixture.h"
#include "tests/ui/RowSignals.h"
#include "tests/ui/Rows.h"
#include "ui/viewmodels/IncidentCenterViewModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kWarning = DiagnosticSeverity::warning;
constexpr auto kError = DiagnosticSeverity::error;

class IncidentCenterViewModelTest : public PageTest {
 protected:
  static IncidentRecord incident(std::uint8_t id, const std::string& title, DiagnosticSeverity severity = kWarning,
                                 bool isResolved = false, std::int64_t occurrences = 3) {
    IncidentRecord record;
    record.id = idOf(id);
    record.fingerprint = "network::" + title;
    record.domain = DiagnosticDomain::network;
    record.severity = severity;
    record.title = title;
    record.lastDetail = "Detail.";
    record.firstSeen = at(8);
    record.lastSeen = at(18, 25);
    record.occurrences = occurrences;
    record.isResolved = isResolved;
    return record;
  }
  /// Opens the page of an application that was launched over a file with these records, which the coordinator has.
  void openOver(const std::vector<IncidentRecord>& records) {
    store("incidents.json", records);
    launch();
    setPublished(dashboard_->publishedIncidents(), dashboard_->incidentStore().records());
    page_ = open<IncidentCenterViewModel>();
    checks_ = std::make_unique<QAbstractItemModelTester>(page_->incidents(),
                                                         QAbstractItemModelTester::FailureReportingMode::Fatal);
  }
  void publish(const std::vector<IncidentRecord>& records) {
    setPublished(dashboard_->publishedIncidents(), records);
    catchUp();
  }
  IncidentRow row(int row) const { return page_->incidents()->row(row); }
  std::vector<QString> titles() const { return fieldsOf(*page_->incidents(), &IncidentRow::title); }
  std::string counts() const {
    return (page_->activeCount() + ' ' + page_->resolvedCount() + ' ' + page_->recurringCount()).toStdString();
  }

  std::unique_ptr<IncidentCenterViewModel> page_;
  std::unique_ptr<QAbstractItemModelTester> checks_;
};

TEST_F(IncidentCenterViewModelTest, incident_isToldWhole) {
  openOver({incident(1, "Default route", kError), incident(2, "DNS", kWarning, true, 1)});
  EXPECT_THAT(rowsOf(*page_->incidents()), ElementsAre(IncidentRow{.title = "Default route",
                                                                   .detail = "Detail.",
                                                                   .symbol = "xmark.octagon.fill",
                                                                   .severity = "Error",
                                                                   .tone = Tone::Critical,
                                                                   .state = "Active",
                                                                   .stateTone = Tone::Warning,
                                                                   .domain = "Network",
                                                                   .occurrences = "3 occurrences",
                                                                   .firstSeen = "First Nov 15, 8:00 AM",
                                                                   .lastSeen = "Last Nov 15, 6:25 PM",
                                                                   .action = "Mark Resolved"},
                                                       IncidentRow{.title = "DNS",
                                                                   .detail = "Detail.",
                                                                   .symbol = "exclamationmark.triangle.fill",
                                                                   .severity = "Warning",
                                                                   .tone = Tone::Warning,
                                                                   .state = "Resolved",
                                                                   .stateTone = Tone::Good,
                                                                   .domain = "Network",
                                                                   .occurrences = "1 occurrence",
                                                                   .firstSeen = "First Nov 15, 8:00 AM",
                                                                   .lastSeen = "Last Nov 15, 6:25 PM",
                                                                   .action = "Reopen"}));
}

TEST_F(IncidentCenterViewModelTest, occurrences_areCountedInWords) {
  openOver({incident(1, "None", kWarning, false, 0), incident(2, "One", kWarning, false, 1),
            incident(3, "Many", kWarning, false, 12'345)});
  EXPECT_EQ(row(0).occurrences, "0 occurrences");
  EXPECT_EQ(row(1).occurrences, "1 occurrence");
  EXPECT_EQ(row(2).occurrences, "12345 occurrences");
}

TEST_F(IncidentCenterViewModelTest, severitiesThatOnlyAHandWrites_haveTheirSymbols) {
  openOver({incident(1, "A", DiagnosticSeverity::ok), incident(2, "B", DiagnosticSeverity::info)});
  EXPECT_EQ(row(0).symbol, "checkmark.seal.fill");
  EXPECT_EQ(row(0).tone, Tone::Good);
  EXPECT_EQ(row(1).symbol, "info.circle.fill");
  EXPECT_EQ(row(1).tone, Tone::Info);
}

TEST_F(IncidentCenterViewModelTest, filters_ofANewPage_keepAll) {
  openOver({incident(1, "A"), incident(2, "B", kError, true)});
  EXPECT_EQ(page_->scope(), "all");
  EXPECT_EQ(page_->severityFilter(), "all");
  EXPECT_THAT(titles(), ElementsAre("A", "B"));
  page_->setScope("resolved");
  page_->setSeverityFilter("error");
  checks_.reset();
  page_ = open<IncidentCenterViewModel>();
  EXPECT_EQ(page_->scope(), "all");
  EXPECT_EQ(page_->severityFilter(), "all");
}

TEST_F(IncidentCenterViewModelTest, filterChoices_areOfferedInOrder) {
  openOver({});
  EXPECT_THAT(rowsOf(*page_->scopes()),
              ElementsAre(ChoiceRow{.value = "all", .title = "All"}, ChoiceRow{.value = "active", .title = "Active"},
                          ChoiceRow{.value = "resolved", .title = "Resolved"}));
  EXPECT_THAT(rowsOf(*page_->severityFilters()),
              ElementsAre(ChoiceRow{.value = "all", .title = "All"}, ChoiceRow{.value = "warning", .title = "Warnings"},
                          ChoiceRow{.value = "error", .title = "Errors"}));
}

TEST_F(IncidentCenterViewModelTest, filters_keepWhatBothKeepInTheStoresOrder) {
  openOver({incident(1, "D"), incident(2, "C", kError), incident(3, "B", kError, true), incident(4, "A")});
  page_->setScope("active");
  EXPECT_THAT(titles(), ElementsAre("D", "C", "A"));
  page_->setSeverityFilter("warning");
  EXPECT_THAT(titles(), ElementsAre("D", "A"));
  page_->setScope("resolved");
  EXPECT_THAT(titles(), IsEmpty());
  page_->setSeverityFilter("error");
  EXPECT_THAT(titles(), ElementsAre("B"));
  page_->setScope("all");
  EXPECT_THAT(titles(), ElementsAre("C", "B"));
  page_->setScope("nonsense");
  EXPECT_EQ(page_->scope(), "all");
}

TEST_F(IncidentCenterViewModelTest, scopeActiveAndErrors_withWarningsAlone_isEmptyThoughTheyCount) {
  openOver({incident(1, "A"), incident(2, "B")});
  page_->setScope("active");
  page_->setSeverityFilter("error");
  EXPECT_TRUE(page_->isEmpty());
  EXPECT_EQ(page_->activeCount(), "2");
}

TEST_F(IncidentCenterViewModelTest, markResolved_underScopeActive_leavesTheListAndMovesTheCounts) {
  openOver({incident(1, "A"), incident(2, "B", kWarning, false, 1)});
  page_->setScope("active");
  EXPECT_EQ(counts(), "2 0 1");
  const QSignalSpy changed(page_.get(), &IncidentCenterViewModel::changed);
  page_->toggleResolved(0);
  EXPECT_THAT(titles(), ElementsAre("B"));
  EXPECT_EQ(counts(), "1 1 0");
  EXPECT_GE(changed.size(), 1);
  EXPECT_TRUE(dashboard_->incidentStore().records()[0].isResolved);
  page_->toggleResolved(0);
  EXPECT_TRUE(page_->isEmpty());
  EXPECT_EQ(counts(), "0 2 0");
}

TEST_F(IncidentCenterViewModelTest, resolveAndReopen_keepTheOrderAndAreStored) {
  openOver({incident(1, "A", kError), incident(2, "B"), incident(3, "C")});
  page_->toggleResolved(0);
  EXPECT_THAT(titles(), ElementsAre("A", "B", "C"));
  EXPECT_EQ(row(0).state, "Resolved");
  EXPECT_EQ(row(0).action, "Reopen");
  launch();
  EXPECT_EQ(dashboard_->incidentStore().records()[0].resolvedAt, clock_.now());
  openOver(dashboard_->incidentStore().records());
  page_->toggleResolved(0);
  EXPECT_EQ(row(0).action, "Mark Resolved");
  EXPECT_FALSE(dashboard_->incidents()[0].isResolved);
  EXPECT_EQ(dashboard_->incidentStore().records()[0].resolvedAt, std::nullopt);
}

TEST_F(IncidentCenterViewModelTest, markResolved_changesOnlyItsRow) {
  openOver({incident(1, "A"), incident(2, "B"), incident(3, "C")});
  const RowSignals changes(*page_->incidents());
  page_->toggleResolved(1);
  catchUp();
  ASSERT_EQ(changes.changes(), 1);
  EXPECT_EQ(changes.changedRow(), 1);
  EXPECT_EQ(changes.total(), 1);
}

TEST_F(IncidentCenterViewModelTest, markResolved_ofARowThatIsNone_doesNothing) {
  openOver({incident(1, "A")});
  page_->toggleResolved(-1);
  page_->toggleResolved(1);
  EXPECT_EQ(counts(), "1 0 1");
}

TEST_F(IncidentCenterViewModelTest, markResolved_ofWhatTheStoreNoLongerHas_showsWhatItHas) {
  openOver({incident(1, "A")});
  publish({incident(1, "A"), incident(2, "Dropped")});
  page_->toggleResolved(1);
  EXPECT_THAT(titles(), ElementsAre("A"));
}

TEST_F(IncidentCenterViewModelTest, equalIdentifiers_areRowsOfTheirOwn) {
  openOver({incident(1, "A"), incident(1, "B")});
  EXPECT_THAT(titles(), ElementsAre("A", "B"));
  page_->setScope("active");
  EXPECT_THAT(titles(), ElementsAre("A", "B"));
}

TEST_F(IncidentCenterViewModelTest, refresh_keepsTheFiltersAndTheRowsThatStay) {
  const std::vector<IncidentRecord> records = {incident(1, "A"), incident(2, "B"), incident(3, "C", kError, true)};
  openOver(records);
  page_->setScope("active");
  page_->setSeverityFilter("warning");
  const RowSignals changes(*page_->incidents());
  publish(records);
  EXPECT_EQ(changes.total(), 0);
  EXPECT_EQ(page_->scope(), "active");
  EXPECT_EQ(page_->severityFilter(), "warning");
  publish({incident(4, "New"), records[0], records[1]});
  EXPECT_EQ(changes.total(), 1);
  EXPECT_THAT(titles(), ElementsAre("New", "A", "B"));
}

TEST_F(IncidentCenterViewModelTest, refresh_sortsWhatTheUserResolved) {
  // Both are found no longer, so that the refresh resolves the other one too.
  openOver({incident(1, "A"), incident(2, "B", kError)});
  page_->toggleResolved(0);
  EXPECT_THAT(titles(), ElementsAre("A", "B"));
  page_->rescan();
  executor_.runAll();
  catchUp();
  EXPECT_THAT(titles(), ElementsAre("B", "A"));
}

TEST_F(IncidentCenterViewModelTest, notificationsThatTheSystemRefuses_areSaidWhileSwitchedOn) {
  center_.authorization = NotificationAuthorization::denied;
  center_.address = "settings:notifications";
  openOver({});
  EXPECT_EQ(page_->notificationNote(), "");
  const QSignalSpy changed(page_.get(), &IncidentCenterViewModel::changed);
  center_.answerAll();
  EXPECT_EQ(changed.size(), 1);
  EXPECT_EQ(page_->notificationNote(), permission_.note());
  EXPECT_NE(page_->notificationNote(), "");
  EXPECT_EQ(page_->notificationAction(), "Open System Settings");
  page_->allowNotifications();
  EXPECT_THAT(workspace_.opened(), ElementsAre("settings:notifications"));
  page_->setNotificationsEnabled(false);
  EXPECT_EQ(page_->notificationNote(), "");
  EXPECT_EQ(page_->notificationAction(), "");
}

TEST_F(IncidentCenterViewModelTest, notifications_switchedOff_areOffAtOnceAndAfterALaunch) {
  openOver({});
  EXPECT_TRUE(page_->notificationsEnabled());
  const QSignalSpy changed(page_.get(), &IncidentCenterViewModel::changed);
  page_->setNotificationsEnabled(false);
  EXPECT_EQ(changed.size(), 1);
  EXPECT_FALSE(page_->notificationsEnabled());
  EXPECT_EQ(defaults_.boolean(kGuardrailNotificationsEnabledKey), false);
  page_->rescan();
  executor_.runAll();
  makeUnsafe();
  page_->rescan();
  executor_.runAll();
  EXPECT_FALSE(dashboard_->report().safeToClose);
  EXPECT_THAT(center_.posted(), IsEmpty());
  const AppSettings later(defaults_);
  EXPECT_FALSE(later.notificationsEnabled());
}

TEST_F(IncidentCenterViewModelTest, saveFailure_isToldUntilASaveSucceeds) {
  openOver({incident(1, "A")});
  EXPECT_EQ(page_->saveFailure(), "");
  storage_.privateFailure = Failure{"No space left on device"};
  page_->toggleResolved(0);
  EXPECT_EQ(page_->saveFailure(), "The incidents could not be saved: No space left on device");
  EXPECT_EQ(row(0).state, "Resolved");
  storage_.privateFailure.reset();
  page_->toggleResolved(0);
  EXPECT_EQ(page_->saveFailure(), "");
}

TEST_F(IncidentCenterViewModelTest, hostileTexts_areMadeHarmless) {
  IncidentRecord record = incident(1, "<img src=x>\n\xe2\x80\xae");
  record.lastDetail = "\x1b[2J" + std::string(10'000, 'x');
  openOver({record});
  EXPECT_EQ(row(0).title, "<img src=x>\\n\\u{202e}");
  EXPECT_EQ(row(0).detail.toStdString(), "\\x1b[2J" + std::string(10'000, 'x'));
}

TEST_F(IncidentCenterViewModelTest, thousands_areTakenOverWithoutMakingTheirTexts) {
  std::vector<IncidentRecord> records;
  UUIDGenerator makeID;
  for (int index = 0; index < 5'000; ++index) {
    records.push_back(
        incident(1, "Incident " + std::to_string(index), index % 3 == 0 ? kError : kWarning, index % 2 == 0));
    records.back().id = makeID();
  }
  openOver(records);
  checks_.reset();
  EXPECT_EQ(page_->incidents()->count(), 5'000);
  const RowSignals changes(*page_->incidents());
  page_->setScope("active");
  EXPECT_EQ(page_->incidents()->count(), 2'500);
  page_->setScope("all");
  // Each as one change, whatever number of rows it brings.
  EXPECT_EQ(changes.total(), 2);
  page_->toggleResolved(4'999);
  EXPECT_EQ(changes.total(), 3);
}

}  // namespace
}  // namespace cirrovane::test
