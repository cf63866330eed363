#include "tests/ui/PageFixture.h"
#include "ui/viewmodels/ExportViewModel.h"

#include <QSignalSpy>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class ExportViewModelTest : public PageTest {
 protected:
  ExportViewModelTest() {
    SyncHealthReport report = makeReport();
    report.blockers = {makeBlocker(BlockerReason::notUploaded, "/Users/test/Divorce.pdf", at(9))};
    setPublished(dashboard_->publishedReport(), Shared(std::move(report)));
  }

  std::string preview() const { return page_->preview().toStdString(); }
  /// The user names the file; the note on it.
  std::string save(const std::string& path) {
    panels_.answer = path;
    page_->save();
    EXPECT_THAT(panels_.savePanels(), SizeIs(0));
    catchUp();
    return dashboard_->exportNote().value_or("");
  }
  std::string file(const std::string& path) const {
    const auto found = storage_.files().find(path);
    return found == storage_.files().end() ? "" : found->second;
  }

  std::unique_ptr<ExportViewModel> page_ = open<ExportViewModel>();
};

TEST_F(ExportViewModelTest, atFirst_thePacketWithNamesIsOffered) {
  EXPECT_EQ(page_->form(), "packet");
  EXPECT_EQ(page_->naming(), "none");
  EXPECT_EQ(preview(), "");
  page_->look();
  EXPECT_THAT(preview(), AllOf(StartsWith("{\n  \"diagnostics\": "), HasSubstr("Divorce.pdf")));
}

TEST_F(ExportViewModelTest, choice_showsAtOnceHowItWillBegin) {
  page_->setNaming("names");
  EXPECT_THAT(preview(), AllOf(HasSubstr("~/name-1.pdf"), Not(HasSubstr("Divorce"))));
  page_->setNaming("strict");
  EXPECT_THAT(preview(), AllOf(HasSubstr("~/name-1\""), Not(HasSubstr("pdf"))));
  page_->setForm("page");
  EXPECT_THAT(preview(), AllOf(HasSubstr("close this Mac"), HasSubstr("~/name-1"), Not(HasSubstr("{"))));
  page_->setNaming("nonsense");
  page_->setForm("nonsense");
  EXPECT_EQ(page_->naming(), "strict");
  EXPECT_EQ(page_->form(), "page");
}

TEST_F(ExportViewModelTest, packet_isWrittenAsChosenWithTheUsualNote) {
  EXPECT_EQ(save("/x/proof.json"), "Proof packet exported to proof.json.");
  EXPECT_THAT(file("/x/proof.json"), HasSubstr("Divorce.pdf"));
  EXPECT_THAT(panels_.savePanels(), SizeIs(1));
  EXPECT_EQ(panels_.savePanels()[0].title, "Export Proof Packet");
  EXPECT_EQ(panels_.savePanels()[0].proposedName, "cirrovane-proof-2026-11-15-1825.json");
}

TEST_F(ExportViewModelTest, hiddenNames_areInNoFile) {
  page_->setNaming("names");
  page_->setForm("both");
  EXPECT_EQ(save("/x/proof.json"), "Proof packet exported to proof.json, its page to proof.html.");
  EXPECT_THAT(file("/x/proof.json"), AllOf(HasSubstr("name-1.pdf"), Not(HasSubstr("Divorce"))));
  EXPECT_THAT(file("/x/proof.html"),
              AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("name-1.pdf"), Not(HasSubstr("Divorce"))));
}

TEST_F(ExportViewModelTest, page_hasAPanelOfItsOwnKind) {
  page_->setForm("page");
  EXPECT_EQ(save("/x/proof.html"), "Page exported to proof.html.");
  EXPECT_EQ(panels_.savePanels()[0].kind, webPages());
  EXPECT_EQ(panels_.savePanels()[0].proposedName, "cirrovane-proof-2026-11-15-1825.html");
  EXPECT_THAT(file("/x/proof.html"), StartsWith("<!DOCTYPE html>"));
}

TEST_F(ExportViewModelTest, pageThatIsThere_isNotReplacedUnasked) {
  files_.addExisting("/x/proof.html");
  files_.addExisting("/x/proof 2.html");
  page_->setForm("both");
  EXPECT_EQ(save("/x/proof.json"), "Proof packet exported to proof.json, its page to proof 3.html.");
}

TEST_F(ExportViewModelTest, failure_isNoted) {
  storage_.failure = Failure{"No space left on device"};
  page_->setForm("both");
  EXPECT_EQ(save("/x/proof.json"), "Export failed: No space left on device");
}

TEST_F(ExportViewModelTest, end_isToldAlsoOfWhoCancels) {
  const QSignalSpy ends(page_.get(), &ExportViewModel::ended);
  page_->save();
  EXPECT_EQ(ends.count(), 0);
  catchUp();
  EXPECT_EQ(ends.count(), 1);
  EXPECT_EQ(dashboard_->exportNote(), std::nullopt);
}

TEST_F(ExportViewModelTest, sheetThatGoesMeanwhile_leavesTheExportAlone) {
  panels_.answer = "/x/proof.json";
  panels_.whileOpen = [this] { page_.reset(); };
  page_->save();
  catchUp();
  EXPECT_NE(file("/x/proof.json"), "");
}

}  // namespace
}  // namespace cirrovane::test
