#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "diagnostics/DiagnosticFinding.h"
#include "tests/support/RawValue.h"

#include <string>
#include <unordered_set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using testing::ElementsAre;

DiagnosticFinding finding(DiagnosticDomain domain, DiagnosticSeverity severity, const std::string& title = "") {
  return {UUIDGenerator()(), domain, severity, title, "detail", Time(std::chrono::seconds(1'794'766'870))};
}

TEST(DiagnosticDomain, rawValues_areTheDomainsTitlesInDeclarationOrder) {
  std::vector<std::string> texts;
  for (const auto& entry : kDiagnosticDomains) {
    EXPECT_EQ(rawValue(entry.value), entry.text);
    texts.emplace_back(entry.text);
  }
  EXPECT_THAT(texts, ElementsAre("iCloud", "Finder", "Network", "Storage", "Power", "Performance", "System"));
}

TEST(DiagnosticDomain, otherCapitalisation_isNoDomain) {
  EXPECT_EQ(caseOf<DiagnosticDomain>("iCloud"), DiagnosticDomain::iCloud);
  EXPECT_EQ(caseOf<DiagnosticDomain>("ICloud"), std::nullopt);
  EXPECT_EQ(caseOf<DiagnosticDomain>("finder"), std::nullopt);
  EXPECT_EQ(caseOf<DiagnosticDomain>(""), std::nullopt);
}

TEST(DiagnosticSeverity, rawValuesAndRanks) {
  std::vector<std::string> texts;
  for (const auto& entry : kDiagnosticSeverities) {
    texts.emplace_back(rawValue(entry.value));
  }
  EXPECT_THAT(texts, ElementsAre("info", "ok", "warning", "error"));
  EXPECT_EQ(severityRank(DiagnosticSeverity::ok), 0);
  EXPECT_EQ(severityRank(DiagnosticSeverity::info), 1);
  EXPECT_EQ(severityRank(DiagnosticSeverity::warning), 2);
  EXPECT_EQ(severityRank(DiagnosticSeverity::error), 3);
}

TEST(SortForPresentation, oneFindingADomain_endsWithICloud) {
  std::vector<DiagnosticFinding> findings;
  for (const auto& entry : kDiagnosticDomains) {
    findings.push_back(finding(entry.value, DiagnosticSeverity::ok));
  }
  sortForPresentation(findings);
  std::vector<std::string> domains;
  for (const DiagnosticFinding& sorted : findings) {
    domains.emplace_back(rawValue(sorted.domain));
  }
  EXPECT_THAT(domains, ElementsAre("Finder", "Network", "Performance", "Power", "Storage", "System", "iCloud"));
}

TEST(SortForPresentation, oneDomain_isErrorWarningInfoOkWithEqualsInOrder) {
  std::vector<DiagnosticFinding> findings = {finding(DiagnosticDomain::power, DiagnosticSeverity::ok, "ok"),
                                             finding(DiagnosticDomain::power, DiagnosticSeverity::warning, "first"),
                                             finding(DiagnosticDomain::power, DiagnosticSeverity::info, "info"),
                                             finding(DiagnosticDomain::power, DiagnosticSeverity::error, "error"),
                                             finding(DiagnosticDomain::power, DiagnosticSeverity::warning, "second")};
  sortForPresentation(findings);
  std::vector<std::string> titles;
  for (const DiagnosticFinding& sorted : findings) {
    titles.push_back(sorted.title);
  }
  EXPECT_THAT(titles, ElementsAre("error", "first", "second", "info", "ok"));
}

TEST(SortForPresentation, infoStandsAboveOk) {
  std::vector<DiagnosticFinding> findings = {finding(DiagnosticDomain::iCloud, DiagnosticSeverity::ok),
                                             finding(DiagnosticDomain::iCloud, DiagnosticSeverity::info)};
  sortForPresentation(findings);
  EXPECT_EQ(findings[0].severity, DiagnosticSeverity::info);
}

TEST(DiagnosticFinding, encodedAndDecoded_isEqual) {
  const DiagnosticFinding made = finding(DiagnosticDomain::iCloud, DiagnosticSeverity::warning, "title");
  const std::string text = encodeJSON(made);
  EXPECT_EQ(decodeJSON<DiagnosticFinding>(text), made);
  EXPECT_EQ(encodeJSON(*decodeJSON<DiagnosticFinding>(text)), text);
}

TEST(DiagnosticFinding, writtenForm_hasItsSixKeys) {
  DiagnosticFinding made = finding(DiagnosticDomain::iCloud, DiagnosticSeverity::warning, "title");
  made.id = *UUID::fromText("6F9619FF-8B86-D011-B42D-00CF4FC964FF");
  EXPECT_EQ(encodeJSON(made),
            "{\n  \"detail\": \"detail\",\n  \"domain\": \"iCloud\",\n"
            "  \"id\": \"6F9619FF-8B86-D011-B42D-00CF4FC964FF\",\n"
            "  \"observedAt\": \"2026-11-15T18:21:10Z\",\n  \"severity\": \"warning\",\n  \"title\": \"title\"\n}");
}

TEST(DiagnosticFinding, severityInOtherCase_failsToDecode) {
  std::string text = encodeJSON(finding(DiagnosticDomain::iCloud, DiagnosticSeverity::warning));
  text.replace(text.find("\"warning\""), std::string("\"warning\"").size(), "\"Warning\"");
  EXPECT_EQ(decodeJSON<DiagnosticFinding>(text), std::nullopt);
}

TEST(DiagnosticFinding, everyField_countsForEqualityAndHash) {
  const DiagnosticFinding made = finding(DiagnosticDomain::iCloud, DiagnosticSeverity::warning, "title");
  std::unordered_set<DiagnosticFinding> different = {made};
  const auto expectNew = [&](auto change) {
    DiagnosticFinding other = made;
    change(other);
    EXPECT_NE(other, made);
    EXPECT_TRUE(different.insert(other).second);
  };
  expectNew([](DiagnosticFinding& other) { other.id = UUID(); });
  expectNew([](DiagnosticFinding& other) { other.domain = DiagnosticDomain::system; });
  expectNew([](DiagnosticFinding& other) { other.severity = DiagnosticSeverity::error; });
  expectNew([](DiagnosticFinding& other) { other.title = "other"; });
  expectNew([](DiagnosticFinding& other) { other.detail = "other"; });
  expectNew([](DiagnosticFinding& other) { other.observedAt += std::chrono::seconds(1); });
}

}  // namespace
}  // namespace cirrovane
