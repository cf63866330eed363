#include "tests/cli/HealthyMac.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using nlohmann::json;
using testing::IsEmpty;
using testing::MatchesRegex;

/// The version of the Mac that these facts describe.
std::string versionOf(const json& facts) {
  const HealthyMac mac;
  mac.describe(facts);
  const ChildResult result = mac.run({"version"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  const ChildResult document = mac.run({"version", "--json"});
  EXPECT_EQ(document.exitStatus, 0);
  EXPECT_EQ(parsed(document.out), (json{{"versionLabel", result.out.substr(0, result.out.size() - 1)}}));
  EXPECT_THAT(namesIn(mac.storeFolder()), IsEmpty());
  return result.out;
}

TEST(Version, host_isTheProgramsOwn) {
  const ChildResult result = ctl({"version"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, MatchesRegex("v[0-9]+\\.[0-9]+\\.[0-9]+ \\([0-9]+\\)\n"));
  const ChildResult document = ctl({"version", "--json"});
  EXPECT_EQ(document.exitStatus, 0);
  EXPECT_EQ(parsed(document.out)["versionLabel"], result.out.substr(0, result.out.size() - 1));
  EXPECT_EQ(parsed(document.out).size(), 1U);
}

TEST(Version, describedMac_isThatOfItsApplication) {
  EXPECT_EQ(versionOf({{"bundle", {{"info", {{"CFBundleShortVersionString", "1.2"}, {"CFBundleVersion", "45"}}}}}}),
            "v1.2 (45)\n");
}

TEST(Version, describedMacThatDoesNotTell_isADevelopersOwn) {
  EXPECT_EQ(versionOf(json::object()), "vdev (0)\n");
  EXPECT_EQ(versionOf({{"bundle", {{"info", {{"CFBundleVersion", "45"}}}}}}), "vdev (45)\n");
}

TEST(Version, hostileText_isEscaped) {
  const HealthyMac mac;
  mac.describe({{"bundle", {{"info", {{"CFBundleShortVersionString", "1\x1b[2J\n2"}, {"CFBundleVersion", "3"}}}}}});
  EXPECT_EQ(mac.run({"version"}).out, "v1\\x1b[2J\\n2 (3)\n");
}

TEST(Version, anArgument_givesStatus2) {
  EXPECT_EQ(ctl({"version", "2"}).exitStatus, 2);
}

}  // namespace
}  // namespace cirrovane::test
