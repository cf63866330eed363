// Pairs of random packets that differ in nothing but names, and what must hold of each after its names were hidden.

#include "base/JSONReader.h"
#include "tests/core/Builders.h"
#include "tests/evidence/Packets.h"

#include <array>
#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int kPairs = 2000;
constexpr std::size_t kNames = 12;

using Random = std::mt19937_64;

std::size_t below(Random& random, std::size_t limit) {
  return random() % limit;
}

std::string letters(Random& random, std::size_t count) {
  std::string text;
  for (; count > 0; --count) {
    text += static_cast<char>('a' + below(random, 26));
  }
  return text;
}

/// A name that is hard to hide.
std::string hardName(Random& random, const std::vector<std::string>& others) {
  static constexpr auto kHard = std::to_array<std::string_view>({"a",
                                                                 "e",
                                                                 "x",
                                                                 "1",
                                                                 " ",
                                                                 ".*",
                                                                 "[a-z]+",
                                                                 "$^",
                                                                 "(a|b)",
                                                                 "\\d",
                                                                 "שלום",
                                                                 "عربي",
                                                                 "a\xE2\x80\xAEgpj",
                                                                 "filePath",
                                                                 "blockers",
                                                                 "details",
                                                                 "report",
                                                                 "iCloud",
                                                                 "Finder",
                                                                 "System",
                                                                 "Still pending upload.",
                                                                 "Running",
                                                                 "The request timed out.",
                                                                 "Top blocker path exists locally: ",
                                                                 "Conflict state reported for ",
                                                                 "Unknown",
                                                                 "a\"b",
                                                                 "a\\b",
                                                                 "tab\t",
                                                                 "line\n",
                                                                 "<b>&amp;<b>",
                                                                 "name-1",
                                                                 "name-2",
                                                                 "~",
                                                                 "~2",
                                                                 "Library",
                                                                 "com~apple~CloudDocs",
                                                                 "(withheld)",
                                                                 "null",
                                                                 "{}",
                                                                 "x” couldn’t be uploaded.",
                                                                 "“",
                                                                 "couldn’t",
                                                                 "none",
                                                                 "\xFF",
                                                                 "ÄÖ"});
  switch (below(random, 4)) {
    case 0:
      return letters(random, 1 + below(random, 14));
    case 1:
      // One name inside another.
      return others.empty() ? "n" : others[below(random, others.size())] + letters(random, 1);
    default:
      return std::string(kHard[below(random, kHard.size())]);
  }
}

/// As many different names; equal ones of two packets have the same place.
std::vector<std::string> namesOf(Random& random, const std::vector<std::string>& extensions) {
  std::vector<std::string> stems;
  std::vector<std::string> names;
  std::set<std::string> taken;
  for (const std::string& extension : extensions) {
    std::string stem = hardName(random, stems);
    // What is no UTF-8 is one and the same in a file.
    const auto written = [&] { return encodeJSON(stem + extension); };
    while (!extensionOf(stem).empty() || !taken.insert(written()).second) {
      stem += letters(random, 9);
    }
    stems.push_back(stem);
    names.push_back(stem + extension);
  }
  return names;
}

/// Makes one and the same packet of different names: all but the names follows from the seed.
class PacketMaker {
 public:
  PacketMaker(std::uint64_t seed, std::vector<std::string> names) : random_(seed), names_(std::move(names)) {}

  ProofPacket make() {
    ProofPacket packet;
    packet.exportedAt = at(12);
    SyncHealthReport report = makeReport();
    report.summary = "No blockers detected in your watchlist.";
    report.folderHealth.clear();
    report.blockers.clear();
    for (std::size_t count = below(random_, 3) + 1; count > 0; --count) {
      FolderHealth& health = report.folderHealth.emplace_back();
      health.id = health.folder.id = idOf(static_cast<std::uint8_t>(count));
      health.folder.path = folder();
      health.folder.name = name();
      health.score = static_cast<std::int64_t>(below(random_, 101));
    }
    for (std::size_t count = below(random_, 8); count > 0; --count) {
      report.blockers.push_back(blocker(report.folderHealth[below(random_, report.folderHealth.size())].folder));
    }
    for (std::size_t count = below(random_, 3); count > 0; --count) {
      ScanSnapshot& snapshot = packet.history.emplace_back();
      snapshot.score = static_cast<std::int64_t>(below(random_, 101));
      if (below(random_, 2) == 0) {
        snapshot.topBlockerFilePath = path();
        snapshot.topBlockerFolderName = name();
      }
    }
    for (std::size_t count = below(random_, 5); count > 0; --count) {
      packet.diagnostics.push_back(finding());
      const DiagnosticFinding found = finding();
      IncidentRecord& incident = packet.incidents.emplace_back();
      incident.title = found.title;
      incident.lastDetail = found.detail;
      incident.fingerprint = fingerprint(found.title);
    }
    packet.report = Shared(std::move(report));
    return packet;
  }

 private:
  const std::string& name() { return names_[below(random_, names_.size())]; }
  static std::string fingerprint(const std::string& title) { return "icloud::" + title; }

  std::string components(std::size_t count) {
    std::string text;
    for (; count > 0; --count) {
      text += (text.empty() ? "" : "/") + name();
    }
    return text;
  }
  std::string folder() {
    switch (below(random_, 4)) {
      case 0:
        return "/Users/" + name() + "/Library/Mobile Documents/com~apple~CloudDocs";
      case 1:
        return "/Users/" + name() + "/" + components(below(random_, 2) + 1);
      case 2:
        return "/Volumes/" + components(below(random_, 3) + 1);
      default:
        return "/home/" + name() + "/" + components(1);
    }
  }
  std::string path() { return folder() + "/" + components(below(random_, 3) + 1); }

  SyncBlocker blocker(const WatchFolder& watched) {
    const BlockerReason reason = kAllBlockerReasons.at(below(random_, kAllBlockerReasons.size()));
    const std::string relative = components(below(random_, 4) + 1);
    SyncBlocker blocker = makeBlocker(reason, watched.path + "/" + relative);
    blocker.folderName = watched.name;
    const std::string own(blocker.filePath.substr(blocker.filePath.rfind('/') + 1));
    switch (reason) {
      case BlockerReason::unresolvedConflict:
        blocker.details = "Conflict state reported for " + (below(random_, 8) == 0 ? path() : relative) + ".";
        break;
      case BlockerReason::uploadError:
      case BlockerReason::downloadError:
        blocker.details = words(own);
        break;
      default:
        blocker.details = below(random_, 3) == 0 ? "Something about " + own + "." : "Still pending upload.";
    }
    return blocker;
  }
  std::string words(const std::string& own) {
    switch (below(random_, 6)) {
      case 0:
        return "“" + own + "” couldn’t be uploaded to iCloud because the request timed out.";
      case 1:
        return "The file “" + name() + "” couldn’t be opened.";
      case 2:
        return "The request timed out.";
      case 3:
        return own + " is locked by " + name();
      case 4:
        return "Die Datei „" + own + "“ konnte nicht geladen werden: " + path();
      default:
        return "The operation couldn’t be completed. (" + name() + " error 4.)";
    }
  }
  DiagnosticFinding finding() {
    DiagnosticFinding finding;
    switch (below(random_, 5)) {
      case 0:
        finding.title = "Top blocker path";
        finding.detail = "Top blocker path exists locally: " + path();
        break;
      case 1:
        finding.title = "iCloud storage path accessible";
        finding.detail = path();
        break;
      case 2:
        finding.title = "About " + name();
        finding.detail = name();
        break;
      case 3:
        finding.title = "Pending uploads";
        finding.detail = "3 files of " + name() + " are still pending upload.";
        break;
      default:
        finding.title = "Pending uploads";
        finding.detail = "3 files are still pending upload.";
    }
    return finding;
  }

  Random random_;
  std::vector<std::string> names_;
};

/// The packet without any text of its own.
ProofPacket withoutTexts(const ProofPacket& packet) {
  ProofPacket bare = packet;
  SyncHealthReport report = *packet.report;
  for (SyncBlocker& blocker : report.blockers) {
    blocker.filePath = blocker.folderName = blocker.details = "";
  }
  for (FolderHealth& health : report.folderHealth) {
    health.folder.name = health.folder.path = "";
  }
  for (RecommendedAction& action : report.actions) {
    action.title = action.detail = "";
  }
  bare.report = Shared(std::move(report));
  for (ScanSnapshot& snapshot : bare.history) {
    for (auto* text : {&snapshot.topBlockerFilePath, &snapshot.topBlockerFolderName}) {
      *text = *text ? std::optional<std::string>("") : std::nullopt;
    }
  }
  for (DiagnosticFinding& finding : bare.diagnostics) {
    finding.title = finding.detail = "";
  }
  for (IncidentRecord& incident : bare.incidents) {
    incident.title = incident.lastDetail = incident.fingerprint = "";
  }
  return bare;
}

TEST(RedactionOfPairs, packetsThatDifferInNamesAlone_comeOutTheSame) {
  Random random(20261115);
  for (int pair = 0; pair < kPairs; ++pair) {
    const std::uint64_t seed = random();
    std::vector<std::string> extensions;
    std::vector<std::string> otherExtensions;
    for (std::size_t index = 0; index < kNames; ++index) {
      static constexpr auto kExtensions = std::to_array<std::string_view>({"", "", ".pdf", ".PAGES", ".mp4"});
      extensions.emplace_back(kExtensions[below(random, kExtensions.size())]);
      otherExtensions.emplace_back(kExtensions[below(random, kExtensions.size())]);
    }
    std::vector<std::string> marked = namesOf(random, extensions);
    const std::string mark = letters(random, 12);
    marked[below(random, kNames)] = mark + extensions[0];
    const std::size_t place =
        static_cast<std::size_t>(std::ranges::find(marked, mark + extensions[0]) - marked.begin());
    marked[place] = mark + extensions[place];

    const ProofPacket first = PacketMaker(seed, marked).make();
    const ProofPacket second = PacketMaker(seed, namesOf(random, extensions)).make();
    const ProofPacket third = PacketMaker(seed, namesOf(random, otherExtensions)).make();

    const std::string names = redacted(first, Redaction::names);
    const std::string strict = redacted(first, Redaction::strict);
    ASSERT_EQ(names, redacted(second, Redaction::names)) << seed;
    ASSERT_EQ(strict, redacted(second, Redaction::strict)) << seed;
    ASSERT_EQ(strict, redacted(third, Redaction::strict)) << seed;
    ASSERT_THAT(names, Not(HasSubstr(mark)));
    ASSERT_THAT(strict, Not(HasSubstr(mark)));

    // From its file as from memory, and once is as good as twice.
    const std::string file = redacted(first, Redaction::none);
    ASSERT_EQ(redacted(file, Redaction::names), names);
    ASSERT_EQ(redacted(names, Redaction::names), names);
    ASSERT_EQ(redacted(names, Redaction::strict), strict);
    const auto before = decodeJSON<ProofPacket>(file);
    const auto after = decodeJSON<ProofPacket>(names);
    ASSERT_TRUE(before && after) << seed;
    ASSERT_EQ(encodeJSON(withoutTexts(*after)), encodeJSON(withoutTexts(*before))) << seed;

    if (pair % 20 == 0) {
      const std::string page = pageText(evidenceOf(first, {}), Redaction::names);
      ASSERT_EQ(page, pageText(evidenceFrom(byteSourceOf(names)), Redaction::none));
      ASSERT_THAT(page, Not(HasSubstr(mark)));
    }
  }
}

}  // namespace
}  // namespace cirrovane::test
