#include "tests/core/Builders.h"
#include "tests/evidence/Packets.h"

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::size_t occurrences(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t found = text.find(part); found != std::string_view::npos; found = text.find(part, found + 1)) {
    ++count;
  }
  return count;
}

std::string pageOf(const ProofPacket& packet) {
  return pageText(evidenceOf(packet, {}), Redaction::none);
}

ProofPacket packetWith(std::size_t blockers, const std::string& path = "/Users/test/a.txt") {
  ProofPacket packet;
  SyncHealthReport report = makeReport();
  report.blockers.assign(blockers, makeBlocker(BlockerReason::notUploaded, path, at(9)));
  packet.report = Shared(std::move(report));
  return packet;
}

TEST(HTMLText, markupAndDeceivingNames_areHarmless) {
  EXPECT_EQ(htmlText("<script>alert(\"1\" & '2')</script>"),
            "&lt;script&gt;alert(&quot;1&quot; &amp; &#39;2&#39;)&lt;/script&gt;");
  EXPECT_EQ(htmlText("a\xE2\x80\xAEgpj.exe\n\x1b"), "a\\u{202e}gpj.exe\\n\\x1b");
  EXPECT_EQ(htmlText("\xFF"), "\\xff");
}

TEST(HTMLText, longText_isCutBetweenCharacters) {
  std::string text;
  while (text.size() < 5000) {
    text += "x\xC3\xA4";
  }
  const std::string html = htmlText(text);
  EXPECT_LT(html.size(), 4200U);
  EXPECT_THAT(html, AllOf(testing::EndsWith(" …"), Not(HasSubstr("\\x"))));
}

TEST(Page, blockers_areAThousandAtMostWithAWordOnTheRest) {
  const std::string page = pageOf(packetWith(1234));
  EXPECT_EQ(occurrences(page, "<tr data-reason="), 1000U);
  EXPECT_THAT(page, AllOf(HasSubstr("Blockers (1234)"), HasSubstr("And 234 more blockers")));
  EXPECT_THAT(pageOf(packetWith(1000)), Not(HasSubstr("more blockers")));
  EXPECT_THAT(pageOf(packetWith(0)), HasSubstr("Nothing stood in the way."));
}

TEST(Page, veryLongPaths_keepItBelowAMegabyte) {
  const std::string page = pageOf(packetWith(5000, "/Users/test/" + std::string(900, '&')));
  EXPECT_LT(page.size(), 8'000'000U);
  const std::string plain = pageOf(packetWith(5000, "/Users/test/" + std::string(900, 'a')));
  EXPECT_LT(plain.size(), 1'000'000U);
  EXPECT_THAT(plain, HasSubstr("more blockers"));
}

TEST(Page, verdict_isThePacketsOwn) {
  EXPECT_THAT(pageOf(packetWith(1)), AllOf(HasSubstr(">YES <"), HasSubstr("It was safe to close this Mac")));
  ProofPacket packet;
  EXPECT_THAT(pageOf(packet), AllOf(HasSubstr(">NO <"), HasSubstr("It was not safe to close this Mac")));
}

TEST(Page, criteria_countHiddenBlockersToo) {
  ProofPacket packet = packetWith(1500);
  SyncHealthReport report = *packet.report;
  for (SyncBlocker& blocker : report.blockers) {
    blocker.reason = BlockerReason::notDownloaded;
  }
  report.blockers.push_back(makeBlocker(BlockerReason::outsideICloud, "/x"));
  report.blockers.push_back(makeBlocker(BlockerReason::uploadError, "/x"));
  packet.report = Shared(std::move(report));
  EXPECT_THAT(pageOf(packet), AllOf(HasSubstr("1 watchlist entries are outside iCloud or missing."),
                                    HasSubstr("Critical blockers exist")));
}

TEST(Page, everyTextOfThePacket_isEscaped) {
  constexpr std::string_view kMarkup = "<img src=x onerror=alert(1)>";
  ProofPacket packet = packetWith(1, "/<img src=x onerror=alert(1)>/\"'");
  SyncHealthReport report = *packet.report;
  report.summary = kMarkup;
  report.blockers[0].details = kMarkup;
  report.blockers[0].folderName = kMarkup;
  report.folderHealth[0].folder.name = kMarkup;
  report.folderHealth[0].folder.path = kMarkup;
  report.actions[0].title = kMarkup;
  report.actions[0].detail = kMarkup;
  packet.report = Shared(std::move(report));
  DiagnosticFinding& finding = packet.diagnostics.emplace_back();
  finding.title = finding.detail = kMarkup;
  IncidentRecord& incident = packet.incidents.emplace_back();
  incident.title = incident.lastDetail = incident.fingerprint = kMarkup;
  packet.history.emplace_back().topBlockerFilePath = kMarkup;
  const std::string page = pageOf(packet);
  EXPECT_EQ(occurrences(page, "<img"), 0U);
  EXPECT_EQ(occurrences(page, "&lt;img src=x onerror=alert(1)&gt;"), 13U);
}

TEST(Page, timeline_isAPictureWithAMarkAScan) {
  ProofPacket packet;
  packet.history.resize(3);
  for (int index = 0; index < 3; ++index) {
    packet.history[static_cast<std::size_t>(index)].timestamp = at(12 - index);
    packet.history[static_cast<std::size_t>(index)].score = 1000 * (index - 1);
    packet.history[static_cast<std::size_t>(index)].safeToClose = index == 2;
  }
  const std::string page = pageOf(packet);
  EXPECT_EQ(occurrences(page, "<path class=\"unsafe\""), 2U);
  EXPECT_EQ(occurrences(page, "<circle class=\"safe\""), 1U);
  EXPECT_THAT(page, HasSubstr("Upload Trust of 3 scans, of which 1 were safe to close"));
  packet.history.resize(1);
  EXPECT_THAT(pageOf(packet), AllOf(HasSubstr("<svg"), Not(HasSubstr("nan"))));
}

}  // namespace
}  // namespace cirrovane::test
