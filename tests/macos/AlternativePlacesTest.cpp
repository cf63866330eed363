#include "platform/macos/plain/AlternativePlaces.h"
#include "platform/posix/PosixCommandRunner.h"

#include <array>
#include <set>
#include <span>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

/// A disk with these executables and no others.
std::function<bool(const std::string&)> diskWith(std::set<std::string> executables) {
  return [executables = std::move(executables)](const std::string& path) { return executables.contains(path); };
}

std::string placeOn(const std::function<bool(const std::string&)>& disk, const std::string& path) {
  return placeOf(path, alternativePlaces(), disk);
}

TEST(AlternativePlaces, route_whereMacOSKeepsIt_isFound) {
  EXPECT_EQ(placeOn(diskWith({"/sbin/route"}), "/usr/sbin/route"), "/sbin/route");
}

TEST(AlternativePlaces, route_atTheAskedPath_isTakenFromThere) {
  EXPECT_EQ(placeOn(diskWith({"/usr/sbin/route", "/sbin/route"}), "/usr/sbin/route"), "/usr/sbin/route");
}

TEST(AlternativePlaces, route_nowhere_staysWhereItWasAskedFor) {
  EXPECT_EQ(placeOn(diskWith({}), "/usr/sbin/route"), "/usr/sbin/route");
}

TEST(AlternativePlaces, programOutsideTheTable_isNeverLookedForElsewhere) {
  EXPECT_EQ(placeOn(diskWith({"/sbin/route", "/sbin/scutil"}), "/usr/sbin/scutil"), "/usr/sbin/scutil");
  EXPECT_EQ(placeOn(diskWith({"/sbin/route"}), "/sbin/route"), "/sbin/route");
}

/// Runs a program where the table says that it is.
PosixCommandRunner runnerWith(std::span<const AlternativePlace> places) {
  return PosixCommandRunner([places](const std::string& path) { return placeOf(path, places, isExecutableFile); });
}

TEST(AlternativePlaces, programElsewhere_runsWithItsArguments) {
  static constexpr std::array<AlternativePlace, 1> kPlaces = {{{"/nowhere/sh", "/bin/sh"}}};
  const PosixCommandRunner runner = runnerWith(kPlaces);
  EXPECT_TRUE(runner.isExecutable("/nowhere/sh"));
  const auto result =
      runner.run("/nowhere/sh", {"-c", "echo \"$0 $1\"", "first", "second"}, CommandOutput::collected, std::nullopt);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->exitStatus, 0);
  EXPECT_EQ(result->output, "first second\n");
}

TEST(AlternativePlaces, programNowhere_isNeitherExecutableNorRun) {
  const PosixCommandRunner runner = runnerWith(alternativePlaces());
  EXPECT_FALSE(runner.isExecutable("/nowhere/sh"));
  EXPECT_FALSE(runner.run("/nowhere/sh", {}, CommandOutput::collected, std::nullopt));
}

}  // namespace
}  // namespace cirrovane
