#include "base/JSONReader.h"
#include "tests/core/Builders.h"
#include "tests/evidence/Packets.h"
#include "tests/support/FakeFileStorage.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

ProofPacket samplePacket() {
  ProofPacket packet;
  packet.exportedAt = at(18, 25);
  SyncHealthReport report = makeReport();
  report.summary = "No blockers detected in your watchlist.";
  const std::string drive(kDrive);
  report.blockers = {makeBlocker(BlockerReason::unresolvedConflict, drive + "/Work/Plan.pages"),
                     makeBlocker(BlockerReason::uploadError, drive + "/Work/Tax.pdf", at(9)),
                     makeBlocker(BlockerReason::notUploaded, drive + "/Work/Tax.pdf", at(9))};
  report.blockers[0].details = "Conflict state reported for Work/Plan.pages.";
  report.blockers[1].details = "“Tax.pdf” couldn’t be uploaded to iCloud because the request timed out.";
  report.blockers[2].details = "Still pending upload.";
  report.folderHealth[0].folder = makeFolder("iCloud Drive", drive, 7);
  packet.report = Shared(std::move(report));
  packet.history.resize(2);
  packet.history[0].topBlockerReason = BlockerReason::uploadError;
  packet.history[0].topBlockerFilePath = drive + "/Work/Tax.pdf";
  packet.history[0].topBlockerFolderName = "iCloud Drive";
  packet.diagnostics = {
      {idOf(3), DiagnosticDomain::iCloud, DiagnosticSeverity::ok, "iCloud storage path accessible", drive, at(18)},
      {idOf(4), DiagnosticDomain::finder, DiagnosticSeverity::warning, "Top blocker path",
       "Top blocker path is no longer available locally: " + drive + "/Work/Tax.pdf", at(18)},
      {idOf(5), DiagnosticDomain::performance, DiagnosticSeverity::info, "CPU usage sample",
       "CPU usage: 7.31% user, 10.52% sys, 82.15% idle ", at(18)},
      {idOf(6), DiagnosticDomain::system, DiagnosticSeverity::info, "Folder Work", "Work", at(18)}};
  IncidentRecord& incident = packet.incidents.emplace_back();
  incident.domain = DiagnosticDomain::finder;
  incident.title = "Top blocker path";
  incident.fingerprint = "finder::top blocker path";
  incident.lastDetail = packet.diagnostics[1].detail;
  incident.occurrences = 1;
  return packet;
}

ProofPacket decoded(const std::string& text) {
  const auto packet = decodeJSON<ProofPacket>(text);
  EXPECT_TRUE(packet) << text;
  return packet.value_or(ProofPacket());
}

TEST(Evidence, packetAsItIs_isThePacket) {
  std::string text;
  writeProofPacket(samplePacket(), [&text](std::string_view piece) {
    text += piece;
    return true;
  });
  EXPECT_EQ(redacted(samplePacket(), Redaction::none), text);
  EXPECT_EQ(redacted(text, Redaction::none), text);
}

TEST(Evidence, names_areHiddenWhereverTheyStand) {
  const ProofPacket packet = decoded(redacted(samplePacket(), Redaction::names));
  const std::string drive = "~/Library/Mobile Documents/com~apple~CloudDocs";
  EXPECT_EQ(packet.diagnostics[0].detail, drive);
  EXPECT_EQ(packet.diagnostics[1].detail,
            "Top blocker path is no longer available locally: " + drive + "/name-1/name-2.pdf");
  EXPECT_EQ(packet.diagnostics[2].detail, samplePacket().diagnostics[2].detail);
  EXPECT_EQ(packet.diagnostics[3].title, "(withheld)");
  EXPECT_EQ(packet.diagnostics[3].detail, "(withheld)");
  EXPECT_EQ(packet.history[0].topBlockerFilePath, drive + "/name-1/name-2.pdf");
  EXPECT_EQ(packet.history[0].topBlockerFolderName, "name-3");
  EXPECT_EQ(packet.history[1].topBlockerFilePath, std::nullopt);
  EXPECT_EQ(packet.incidents[0].lastDetail, packet.diagnostics[1].detail);
  EXPECT_EQ(packet.incidents[0].fingerprint, "finder::top blocker path");
  const auto& blockers = packet.report->blockers;
  EXPECT_EQ(blockers[0].filePath, drive + "/name-1/name-4.pages");
  EXPECT_EQ(blockers[0].details, "Conflict state reported for name-1/name-4.pages.");
  EXPECT_EQ(blockers[0].folderName, "name-1");
  EXPECT_EQ(blockers[1].details, "“name-2.pdf” couldn’t be uploaded to iCloud because the request timed out.");
  EXPECT_EQ(blockers[2].details, "Still pending upload.");
  EXPECT_EQ(packet.report->folderHealth[0].folder.name, "name-3");
  EXPECT_EQ(packet.report->folderHealth[0].folder.path, drive);
  EXPECT_EQ(packet.report->summary, "No blockers detected in your watchlist.");
  EXPECT_EQ(packet.report->actions[0].title, "(withheld)") << "no advice of ours";
}

TEST(Evidence, strict_hidesExtensionsAndTheSystemsWordsToo) {
  const ProofPacket packet = decoded(redacted(samplePacket(), Redaction::strict));
  EXPECT_EQ(packet.report->blockers[1].filePath, "~/Library/Mobile Documents/com~apple~CloudDocs/name-1/name-2");
  EXPECT_EQ(packet.report->blockers[1].details, "(withheld)");
  EXPECT_EQ(packet.report->blockers[0].details, "Conflict state reported for name-1/name-4.");
  EXPECT_EQ(packet.diagnostics[2].detail, "(withheld)");
  EXPECT_EQ(packet.diagnostics[2].title, "CPU usage sample");
}

TEST(Evidence, thermalStateThatIsNone_isUnknown) {
  ProofPacket packet;
  packet.systemStatus.thermalState = "Anna’s Mac";
  EXPECT_EQ(decoded(redacted(packet, Redaction::names)).systemStatus.thermalState, "Unknown");
}

std::string replacedOnce(std::string text, std::string_view what, std::string_view with) {
  const std::size_t found = text.find(what);
  EXPECT_NE(found, std::string::npos) << what;
  return text.replace(found, what.size(), with);
}

TEST(SentPacket, keysInAnyOrderAndUnknownOnes_areTaken) {
  const std::string text =
      R"({"later": {"a": [1, null, "\u00e4"]}, "systemStatus": {"capturedAt": "2026-11-15T18:25:15Z",
    "lowPowerMode": false, "memoryTotalBytes": 0, "thermalState": "Fair", "uptimeSeconds": 1.5e3, "load1m": null},
    "report": {"summary": "x", "status": "safe", "score": 1, "safeToClose": true, "metrics": {"totalFiles": 0,
    "scannedFolders": 0, "pendingUploads": 0, "unresolvedConflicts": 0, "errors": 0, "notDownloaded": 0},
    "localAvailabilityScore": 2, "generatedAt": "2026-11-15T18:25:15Z", "folderHealth": [], "blockers": [],
    "actions": []}, "incidents": [], "history": [], "exportedAt": "2026-11-15T18:25:15Z", "diagnostics": []})";
  const ProofPacket packet = decoded(redacted("\xEF\xBB\xBF" + text, Redaction::none));
  EXPECT_EQ(packet, decoded(text));
  EXPECT_EQ(packet.systemStatus.uptimeSeconds, 1500);
}

TEST(SentPacket, thatIsNone_isAFailureThatSaysWhy) {
  const std::string good = redacted(samplePacket(), Redaction::none);
  const std::string deep(1'000'000, '[');
  for (const auto& [text, why] : {
           std::pair<std::string, std::string>{"", "no object (byte 1)"},
           {"{}", "missing"},
           {"[]", "no object (byte 1)"},
           {good.substr(0, good.size() / 2), "(byte "},
           {good + "x", "something after the end"},
           {std::string("{\"x\": ") + deep, "nested too deep"},
           {replacedOnce(good, "\"score\": 36", "\"score\": \"36\""), "no number"},
           {replacedOnce(good, "\"score\": 36", "\"score\": 36.5"), "no whole number"},
           {replacedOnce(good, "\"score\": 36", "\"score\": 99999999999999999999"), "no whole number"},
           {replacedOnce(good, "\"score\": 36,", ""), "“score” is missing"},
           {replacedOnce(good, "\"exportedAt\": \"2026-11", "\"exportedAt\": \"2026-13"), "no date"},
           {replacedOnce(good, "\"reason\": \"notUploaded\"", "\"reason\": \"bored\""), "an unknown value"},
           {replacedOnce(good, "\"history\": [", "\"history\": [], \"history\": ["), "“history” comes twice"},
           {replacedOnce(good, "\"history\": [", "\"history\": [,"), "no object"},
           {replacedOnce(good, "\"history\": [", "\"history\": {"), "no list"},
           {replacedOnce(good, "Still pending", "Still \\q pending"), "no escape"},
           {replacedOnce(good, "Still pending", "Still \\ud800 pending"), "half a character"},
           {replacedOnce(good, "Still pending", "Still \xFF pending"), "no UTF-8"},
           {replacedOnce(good, "Still pending", "Still \n pending"), "a control byte"},
           {replacedOnce(good, "Still pending", std::string(2'000'000, 'x')), "a text that is too long"},
           {std::string("{\"x\": 1e999}"), "a number that is too large"},
           {std::string("{\"x\": 01}"), "no number"},
           {std::string("{\"x\": nul}"), "no JSON"},
       }) {
    EXPECT_THAT(redacted(text, Redaction::names),
                AllOf(StartsWith("Failed: This is no proof packet: "), HasSubstr(why)))
        << text.substr(0, 200);
    EXPECT_THAT(pageText(evidenceFrom(byteSourceOf(text)), Redaction::none), StartsWith("Failed: "));
  }
}

TEST(SentPacket, inPiecesOfAnySize_isTheSame) {
  const std::string text = redacted(samplePacket(), Redaction::none);
  for (const std::size_t size : {1U, 2U, 7U, 4096U}) {
    std::string_view rest = text;
    const ByteSource source = [&](std::span<char> space) {
      const std::size_t count = std::min({size, rest.size(), space.size()});
      std::copy_n(rest.begin(), count, space.begin());
      rest.remove_prefix(count);
      return Result<std::size_t>(count);
    };
    EXPECT_EQ(packetText(evidenceFrom(source), Redaction::none), text);
  }
}

TEST(SentPacket, thatCannotBeRead_isAFailure) {
  const ByteSource source = [](std::span<char>) -> Result<std::size_t> { return Failure{"The disk is gone"}; };
  EXPECT_EQ(packetText(evidenceFrom(source), Redaction::names), "Failed: The disk is gone");
}

TEST(SavedEvidence, bothFiles_areOfOnePass) {
  const FakeFileStorage storage;
  const std::string text = redacted(samplePacket(), Redaction::none);
  EXPECT_EQ(saveEvidence(evidenceFrom(byteSourceOf(text)), Redaction::names, {"/p.json", "/p.html"}, storage),
            std::nullopt);
  EXPECT_EQ(*storage.read("/p.json", 1U << 20U), redacted(samplePacket(), Redaction::names));
  EXPECT_EQ(*storage.read("/p.html", 1U << 20U), pageText(evidenceOf(samplePacket(), {}), Redaction::names));
}

TEST(SavedEvidence, ofAPacketThatIsNone_writesNothingAndSaysWhy) {
  const FakeFileStorage storage;
  const auto failure = saveEvidence(evidenceFrom(byteSourceOf("{")), Redaction::names, {"/p.json", "/p.html"}, storage);
  EXPECT_THAT(failure.value_or(Failure()).message, StartsWith("This is no proof packet: "));
  EXPECT_FALSE(storage.read("/p.json", 1));
  EXPECT_FALSE(storage.read("/p.html", 1));
}

TEST(SavedEvidence, diskThatRefuses_isTold) {
  FakeFileStorage storage;
  storage.failure = Failure{"No space left"};
  const ProofPacket packet = samplePacket();
  EXPECT_EQ(saveEvidence(evidenceOf(packet, {}), Redaction::names, {"/p.json", std::nullopt}, storage),
            Failure{"No space left"});
  EXPECT_EQ(saveEvidence(evidenceOf(packet, {}), Redaction::names, {std::nullopt, "/p.html"}, storage),
            Failure{"No space left"});
}

TEST(Preview, packet_isItsFirstLines) {
  const std::string whole = redacted(samplePacket(), Redaction::names);
  const std::string preview = packetPreview(samplePacket(), {}, Redaction::names, 12);
  EXPECT_EQ(std::ranges::count(preview, '\n'), 12);
  EXPECT_THAT(whole, StartsWith(preview));
  EXPECT_EQ(packetPreview(samplePacket(), {}, Redaction::names, 1'000'000), whole);
}

TEST(Preview, page_isItsFirstWords) {
  EXPECT_THAT(
      pagePreview(samplePacket(), {}, Redaction::names),
      AllOf(HasSubstr("No blockers detected"), HasSubstr("CloudDocs/name-1/name-2.pdf"), Not(HasSubstr("Tax"))));
  EXPECT_THAT(pagePreview(samplePacket(), {}, Redaction::none), HasSubstr("CloudDocs/Work/Tax.pdf"));
}

}  // namespace
}  // namespace cirrovane::test
