#include "tests/diagnostics/MachineFixture.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

class PlatformDiagnostics : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> collected() const {
    return service().collect(newProbes(), report_, watchFolders_).findings;
  }
  std::vector<DiagnosticFinding> collected(DiagnosticDomain domain) const {
    return service().collect(domain, newProbes(), report_, watchFolders_).findings;
  }
  std::vector<std::string> output(const CommandLine& line) const {
    const auto text = service().runCommand(newProbes(), line.front(), {line.begin() + 1, line.end()}).text;
    return text ? std::vector{*text} : std::vector<std::string>();
  }

  std::vector<WatchFolder> watchFolders_ = {existingFolder()};
};

/// Each finding as "Domain severity Title".
std::vector<std::string> headlines(const std::vector<DiagnosticFinding>& findings) {
  std::vector<std::string> lines;
  std::ranges::transform(findings, std::back_inserter(lines), [](const DiagnosticFinding& finding) {
    return std::string(rawValue(finding.domain)) + " " + std::string(rawValue(finding.severity)) + " " + finding.title;
  });
  return lines;
}

TEST_F(PlatformDiagnostics, collect_onAHealthyMac_isSortedByDomainThenSeverity) {
  EXPECT_THAT(
      headlines(collected()),
      ElementsAre("Finder info Finder/Files diagnostic scope", "Finder ok Finder process", "Finder ok Watchlist paths",
                  "Network info Network scope", "Network ok Default route", "Network ok iCloud host reachability",
                  "Network ok DNS resolution", "Performance info CPU usage sample",
                  "Performance info Temperature probe", "Performance ok CPU load average",
                  "Performance ok Thermal state", "Power ok Battery level", "Power ok Charging",
                  "Power ok Low Power Mode", "Storage info Swap usage", "Storage info SMART tooling",
                  "Storage ok Disk capacity", "System info Diagnostic scope", "System ok Scan freshness",
                  "System ok Sleep/shutdown risk", "iCloud ok iCloud session detected",
                  "iCloud ok iCloud storage path accessible", "iCloud ok bird daemon", "iCloud ok cloudd daemon",
                  "iCloud ok fileproviderd", "iCloud ok Pending uploads"));
}

TEST_F(PlatformDiagnostics, collect_onATroubledMac_hasTheWorstOfEachDomainFirst) {
  commands_.forget(pgrep("cloudd"));
  report_.metrics = {.totalFiles = 9,
                     .scannedFolders = 1,
                     .pendingUploads = 1,
                     .unresolvedConflicts = 1,
                     .errors = 1,
                     .notDownloaded = 1};
  EXPECT_THAT(
      headlines(collected(DiagnosticDomain::iCloud)),
      ElementsAre("iCloud error Unresolved conflicts", "iCloud error Upload/download errors",
                  "iCloud warning cloudd daemon", "iCloud warning Pending uploads", "iCloud info Cloud-only files",
                  "iCloud ok iCloud session detected", "iCloud ok iCloud storage path accessible",
                  "iCloud ok bird daemon", "iCloud ok fileproviderd"));
}

TEST_F(PlatformDiagnostics, collect_givesFinderBeforeICloud) {
  const std::vector<DiagnosticFinding> findings = collected();
  const auto firstOfICloud = std::ranges::find(findings, DiagnosticDomain::iCloud, &DiagnosticFinding::domain);
  const auto lastOfFinder =
      std::ranges::find(findings.rbegin(), findings.rend(), DiagnosticDomain::finder, &DiagnosticFinding::domain);
  ASSERT_NE(firstOfICloud, findings.end());
  ASSERT_NE(lastOfFinder, findings.rend());
  EXPECT_LE(lastOfFinder.base(), firstOfICloud);
}

TEST_F(PlatformDiagnostics, collect_withPendingUploads_warnsOfPowerAndOfSleep) {
  report_.metrics.pendingUploads = 1;
  EXPECT_THAT(headlines(collected()),
              IsSupersetOf({"Power warning Upload power risk", "System warning Sleep/shutdown risk"}));
}

TEST_F(PlatformDiagnostics, collect_withAnEmptyWatchlist_saysSoAndHasItsPathsInOrder) {
  watchFolders_.clear();
  EXPECT_THAT(headlines(collected()),
              IsSupersetOf({"iCloud warning No watchlist configured", "Finder ok Watchlist paths"}));
}

TEST_F(PlatformDiagnostics, collect_runsTheCommandsOfTheDomainsInTheirOwnOrder) {
  collected();
  EXPECT_THAT(commands_.ran(),
              ElementsAre(pgrep("bird"), pgrep("cloudd"), pgrep("fileproviderd"), kRoute, kReachability, kResolution,
                          kSwap, pgrep("smartctl"), kSMARTLookup, kTop, kTemperatureLookup));
}

TEST_F(PlatformDiagnostics, collect_onceMore_observesAfresh) {
  EXPECT_THAT(headlines(collected()), Contains("iCloud ok bird daemon"));
  commands_.forget(pgrep("bird"));
  EXPECT_THAT(headlines(collected()), Contains("iCloud warning bird daemon"));
  EXPECT_EQ(commands_.ran().size(), 22U);
}

TEST_F(PlatformDiagnostics, collect_givesEveryFindingAnIdentifierOfItsOwn) {
  std::set<std::string> identifiers;
  for (int round = 0; round < 2; ++round) {
    for (const DiagnosticFinding& finding : collected()) {
      EXPECT_TRUE(identifiers.insert(finding.id.text()).second) << finding;
    }
  }
}

TEST_F(PlatformDiagnostics, collect_ofOneDomain_isItsPartOfTheWhole) {
  report_.metrics.pendingUploads = 1;
  report_.blockers = {makeBlocker(BlockerReason::notUploaded, "/gone")};
  const std::vector<std::string> whole = headlines(collected());
  std::vector<std::string> joined;
  for (const DiagnosticDomain domain :
       {DiagnosticDomain::finder, DiagnosticDomain::network, DiagnosticDomain::performance, DiagnosticDomain::power,
        DiagnosticDomain::storage, DiagnosticDomain::system, DiagnosticDomain::iCloud}) {
    std::ranges::copy(headlines(collected(domain)), std::back_inserter(joined));
  }
  EXPECT_EQ(joined, whole);
}

TEST_F(PlatformDiagnostics, collect_ofOneDomain_runsNoCommandOfAnother) {
  collected(DiagnosticDomain::network);
  EXPECT_THAT(commands_.ran(), ElementsAre(kRoute, kReachability, kResolution));
}

/// A clock that no two readings find the same.
class RunningClock final : public Clock {
 public:
  Time now() const override { return now_ += std::chrono::seconds(1); }

 private:
  mutable Time now_ = Time(std::chrono::seconds(1'763'231'000));
};

TEST_F(PlatformDiagnostics, finding_isDatedWhenItIsMade) {
  const RunningClock clock;
  const std::vector<DiagnosticFinding> findings =
      PlatformDiagnosticsService(system_, files_, clock).networkFindings(newProbes()).findings;
  ASSERT_EQ(findings.size(), 4U);
  for (std::size_t index = 1; index < findings.size(); ++index) {
    EXPECT_LT(findings[index - 1].observedAt, findings[index].observedAt);
  }
}

TEST_F(PlatformDiagnostics, runCommand_thatSucceeds_givesItsTextUntouched) {
  commands_.answer({"/bin/tool", "a b", "", "*"}, " one\r\ntwo\n\n");
  EXPECT_THAT(output({"/bin/tool", "a b", "", "*"}), ElementsAre(" one\r\ntwo\n\n"));
}

TEST_F(PlatformDiagnostics, runCommand_thatPrintsNothing_givesAnEmptyText) {
  commands_.answer({"/bin/tool"}, "");
  EXPECT_THAT(output({"/bin/tool"}), ElementsAre(""));
}

TEST_F(PlatformDiagnostics, runCommand_inEveryWayWithoutOutput_givesNothing) {
  commands_.answer({"/bin/tool"}, "text");
  inEveryWayWithoutOutput({"/bin/tool"}, [&] { EXPECT_THAT(output({"/bin/tool"}), IsEmpty()); });
  commands_.answer({"/bin/tool"}, {127, "text"});
  EXPECT_THAT(output({"/bin/tool"}), IsEmpty());
}

TEST_F(PlatformDiagnostics, runCommand_whoseTextIsAlmostUTF8_givesNothing) {
  for (const char* text : {"\x80", "a\xC3", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xC0\x80"}) {
    commands_.answer({"/bin/tool"}, text);
    EXPECT_THAT(output({"/bin/tool"}), IsEmpty());
  }
  commands_.answer({"/bin/tool"}, "caf\xC3\xA9 \xF0\x9F\x98\x80");
  EXPECT_THAT(output({"/bin/tool"}), ElementsAre("caf\xC3\xA9 \xF0\x9F\x98\x80"));
}

TEST_F(PlatformDiagnostics, isProcessRunning_followsTheStatusAlone) {
  const auto isRunning = [&] { return service().isProcessRunning(newProbes(), "odd name").value(); };
  EXPECT_FALSE(isRunning());
  commands_.answer(pgrep("odd name"), "");
  EXPECT_TRUE(isRunning());
  commands_.answer(pgrep("odd name"), "\xFF");
  EXPECT_TRUE(isRunning());
  commands_.answer(pgrep("odd name"), {1, "501\n"});
  EXPECT_FALSE(isRunning());
  commands_.answer(pgrep("odd name"), {std::nullopt, "501\n"});
  EXPECT_FALSE(isRunning());
  EXPECT_THAT(commands_.ran(), testing::Each(CommandLine{"/usr/bin/pgrep", "-x", "odd name"}));
}

}  // namespace
}  // namespace cirrovane::test
