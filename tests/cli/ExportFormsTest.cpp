#include "tests/cli/HealthyMac.h"
#include "tests/cli/Scans.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// Exports with names hidden, as a page, and of a packet that was sent.
class ExportForms : public testing::Test {
 protected:
  ExportForms() { mac_.addFile("Divorce papers.pdf", "isUploaded=false"); }

  ChildResult run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "export");
    return mac_.run(arguments);
  }

  const HealthyMac mac_;
  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const std::string packet_ = folder_ / "packet.json";
  const std::string page_ = folder_ / "page.html";
};

TEST_F(ExportForms, redactedPacket_holdsNoName) {
  for (const char* how : {"names", "strict"}) {
    EXPECT_EQ(run({packet_, "--redact", how}).exitStatus, 0);
    const std::string text = readFile(packet_);
    EXPECT_THAT(text,
                AllOf(Not(HasSubstr("Divorce")), Not(HasSubstr("papers")), HasSubstr("~/Library/Mobile Documents/")));
    EXPECT_EQ(json::parse(text).dump(2) + "\n", text);
    const std::string path = json::parse(text)["report"]["blockers"][0]["filePath"];
    EXPECT_EQ(path.ends_with(".pdf"), std::string(how) == "names");
  }
}

TEST_F(ExportForms, pageAlone_isWrittenWithStatus0) {
  const ChildResult result = run({"--html", page_});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.out, "Page exported to page.html.\n");
  EXPECT_THAT(readFile(page_), AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("Divorce papers.pdf")));
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("page.html"));
}

TEST_F(ExportForms, packetAndPage_areOfOneRefresh) {
  const ChildResult result = run({packet_, "--html", page_, "--redact", "names"});
  EXPECT_EQ(result.out, "Proof packet exported to packet.json.\nPage exported to page.html.\n");
  EXPECT_EQ(documentAt(mac_.storePath("history.json")).size(), 1U);
  // A page is built of its packet alone.
  EXPECT_EQ(run({"--from", packet_, "--html", "-"}).out, readFile(page_));
}

TEST_F(ExportForms, sentPacket_isTakenWithoutARefresh) {
  ASSERT_EQ(run({packet_}).exitStatus, 0);
  std::filesystem::remove(mac_.storePath("history.json"));
  const ChildResult result = run({"--from", packet_, "-", "--redact", "names"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.out, Not(HasSubstr("Divorce")));
  EXPECT_FALSE(std::filesystem::exists(mac_.storePath("history.json")));
  EXPECT_EQ(run({"--from", packet_, "-"}).out, readFile(packet_));
}

TEST_F(ExportForms, packetInItsOwnPlace_isRedactedThere) {
  ASSERT_EQ(run({packet_}).exitStatus, 0);
  EXPECT_EQ(run({packet_, "--from", packet_, "--redact", "strict"}).exitStatus, 0);
  EXPECT_THAT(readFile(packet_), Not(HasSubstr("Divorce")));
}

TEST_F(ExportForms, sentFileThatIsNoPacket_givesStatus3AndWritesNothing) {
  const std::string sent = folder_ / "sent.json";
  for (const std::string& text : {std::string(), std::string("{}"), std::string("[1"), std::string(5'000'000, '['),
                                  std::string("\x7F"
                                              "ELF")}) {
    writeFile(sent, text);
    const ChildResult result = run({"--from", sent, packet_, "--html", page_});
    EXPECT_EQ(result.exitStatus, 3);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, StartsWith("cirrovanectl: Export failed: This is no proof packet: "));
    EXPECT_THAT(namesIn(folder_.path()), ElementsAre("sent.json"));
  }
}

TEST_F(ExportForms, sentFileThatCannotBeRead_givesStatus3AndSaysWhy) {
  EXPECT_EQ(run({"--from", folder_ / "none", packet_}).err,
            "cirrovanectl: Export failed: “none” could not be read: No such file or directory.\n");
  EXPECT_EQ(run({"--from", folder_.path(), packet_}).exitStatus, 3);
  EXPECT_THAT(namesIn(folder_.path()), IsEmpty());
}

TEST_F(ExportForms, nonsense_givesStatus2AndDoesNotRefresh) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"--redact", "names"},
                                             {packet_, "--redact", "all"},
                                             {packet_, "--html"},
                                             {"-", "--html", "-"},
                                             {packet_, "--html", packet_},
                                             {"--from", packet_},
                                             {packet_, "--html", folder_.path() + "/"}}) {
    const ChildResult result = run(arguments);
    EXPECT_EQ(result.exitStatus, 2) << testing::PrintToString(arguments);
    EXPECT_THAT(result.err, Not(IsEmpty()));
  }
  EXPECT_FALSE(std::filesystem::exists(mac_.storePath("history.json")));
}

TEST_F(ExportForms, pageThatCannotBeWritten_givesStatus3AndKeepsThePacket) {
  EXPECT_EQ(run({packet_, "--html", folder_ / "none/page.html"}).exitStatus, 3);
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("packet.json"));
}

}  // namespace
}  // namespace cirrovane::test
