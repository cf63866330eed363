#include "diagnostics/CollectedFindings.h"
#include "tests/diagnostics/MachineFixture.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticDomain;
using enum DiagnosticSeverity;
using testing::ElementsAre;
using testing::IsEmpty;

DiagnosticFinding finding(DiagnosticDomain domain, DiagnosticSeverity severity, const std::string& title) {
  return {UUIDGenerator()(), domain, severity, title, "detail", Time()};
}

TEST(CollectedFindings, notReached_keepsThePreviousFindingAsItWas) {
  const DiagnosticFinding previous = finding(network, warning, "DNS resolution");
  EXPECT_THAT(withLastValues({{}, {{network, "DNS resolution"}}}, {previous}), ElementsAre(previous));
}

TEST(CollectedFindings, notReached_withoutAPreviousFinding_isAbsent) {
  EXPECT_THAT(withLastValues({{}, {{network, "DNS resolution"}}}, {}), IsEmpty());
}

TEST(CollectedFindings, notReached_ofAnotherDomain_keepsNothing) {
  const std::vector<DiagnosticFinding> previous = {finding(network, warning, "Scope"), finding(network, ok, "Other")};
  EXPECT_THAT(withLastValues({{}, {{storage, "Scope"}}}, previous), IsEmpty());
}

TEST(CollectedFindings, reached_losesWhatIsNoLongerFound) {
  const DiagnosticFinding found = finding(network, ok, "Default route");
  EXPECT_THAT(withLastValues({{found}, {}}, {finding(network, warning, "DNS resolution")}), ElementsAre(found));
}

TEST(CollectedFindings, kept_standWhereTheirSeverityPutsThem) {
  const DiagnosticFinding disk = finding(storage, ok, "Disk capacity");
  const DiagnosticFinding route = finding(network, ok, "Default route");
  const DiagnosticFinding resolution = finding(network, warning, "DNS resolution");
  EXPECT_THAT(withLastValues({{route, disk}, {{network, "DNS resolution"}}}, {resolution}),
              ElementsAre(resolution, route, disk));
}

}  // namespace
}  // namespace cirrovane::test
