#include "tests/diagnostics/MachineFixture.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using enum DiagnosticSeverity;
using testing::Each;
using testing::ElementsAre;
using testing::Field;

class NetworkFindings : public MachineTest {
 protected:
  std::vector<DiagnosticFinding> findings() const { return service().networkFindings(); }
  std::optional<Row> row(const std::string& title) const { return rowTitled(title, findings()); }
};

const Row kNetworkScope = {
    info, "Network scope",
    "Current checks cover reachability-class signals; deep throughput diagnostics remain optional and "
    "desktop-first."};
const Row kReachable = {ok, "iCloud host reachability", "www.icloud.com appears reachable."};
const Row kUnreachable = {warning, "iCloud host reachability",
                          "www.icloud.com appears not reachable from current network state."};
const Row kResolved = {ok, "DNS resolution", "DNS resolution for www.icloud.com returned addresses."};
const Row kUnresolved = {warning, "DNS resolution", "DNS resolution returned no addresses."};

TEST_F(NetworkFindings, healthyMac_givesFourRowsInOrder) {
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{ok, "Default route", "Default route present."}, kReachable, kResolved, kNetworkScope));
}

TEST_F(NetworkFindings, everythingWrong_leavesTheRouteAndTheScope) {
  commands_ = FakeCommandRunner();
  EXPECT_THAT(rowsOf(findings()),
              ElementsAre(Row{warning, "Default route", "Could not query default route."}, kNetworkScope));
}

TEST_F(NetworkFindings, everyFinding_isOfNetworkAndOfNow) {
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::domain, DiagnosticDomain::network)));
  EXPECT_THAT(findings(), Each(Field(&DiagnosticFinding::observedAt, clock_.now())));
}

TEST_F(NetworkFindings, commands_runInOrderWithTheirExactArguments) {
  findings();
  EXPECT_THAT(commands_.ran(),
              ElementsAre(CommandLine{"/usr/sbin/route", "-n", "get", "default"},
                          CommandLine{"/usr/sbin/scutil", "-r", "www.icloud.com"},
                          CommandLine{"/usr/bin/dscacheutil", "-q", "host", "-a", "name", "www.icloud.com"}));
}

TEST_F(NetworkFindings, route_withoutGateway_isStillOk) {
  const Row noGateway = {ok, "Default route", "Route output did not include gateway metadata."};
  for (const char* output : {"route: writing to routing socket: not in table\n", "", "Gateway: 10.0.0.1"}) {
    commands_.answer(kRoute, output);
    EXPECT_EQ(row("Default route"), noGateway) << output;
  }
  commands_.answer(kRoute, "xgatewayx");
  EXPECT_EQ(row("Default route"), (Row{ok, "Default route", "Default route present."}));
}

TEST_F(NetworkFindings, route_withoutOutput_isAWarning) {
  inEveryWayWithoutOutput(kRoute, [&] {
    EXPECT_EQ(row("Default route"), (Row{warning, "Default route", "Could not query default route."}));
    EXPECT_EQ(row("DNS resolution"), kResolved);
  });
}

TEST_F(NetworkFindings, reachability_followsTheWordInItsExactCase) {
  commands_.answer(kReachability, "Reachable,Transient Connection\n");
  EXPECT_EQ(row("iCloud host reachability"), kReachable);
  for (const char* output : {"reachable\n", "Unknown host\n", ""}) {
    commands_.answer(kReachability, output);
    EXPECT_EQ(row("iCloud host reachability"), kUnreachable) << output;
  }
}

TEST_F(NetworkFindings, reachability_reportOfNotReachable_isStillOk) {
  commands_.answer(kReachability, "Not Reachable\n");
  EXPECT_EQ(row("iCloud host reachability"), kReachable);
}

TEST_F(NetworkFindings, reachability_withoutOutput_isLeftOut) {
  inEveryWayWithoutOutput(kReachability, [&] {
    EXPECT_EQ(row("iCloud host reachability"), std::nullopt);
    EXPECT_EQ(row("DNS resolution"), kResolved);
  });
}

TEST_F(NetworkFindings, resolution_followsTheWordInItsExactCase) {
  commands_.answer(kResolution, "name: www.icloud.com\nipv6_address: 2620:149::1\nip_address: 17.0.0.1\n");
  EXPECT_EQ(row("DNS resolution"), kResolved);
  for (const char* output : {"ipv6_address: 2620:149::1\n", "IP_ADDRESS: 17.0.0.1", ""}) {
    commands_.answer(kResolution, output);
    EXPECT_EQ(row("DNS resolution"), kUnresolved) << output;
  }
}

TEST_F(NetworkFindings, resolution_withoutOutput_isLeftOut) {
  inEveryWayWithoutOutput(kResolution, [&] {
    EXPECT_EQ(row("DNS resolution"), std::nullopt);
    EXPECT_EQ(row("iCloud host reachability"), kReachable);
  });
}

}  // namespace
}  // namespace cirrovane::test
