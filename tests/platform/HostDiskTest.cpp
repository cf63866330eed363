#include "platform/linux/host/HostDisk.h"

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// Sets an environment variable, or takes it away, as long as it lives.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) {
      before_ = before;
    }
    set(value);
  }
  ~EnvironmentVariable() { set(before_ ? before_->c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void set(const char* value) const {
    if (value != nullptr) {
      setenv(name_, value, 1);
    } else {
      unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

TEST(HostFolders, home_isThatOfTheEnvironment) {
  const EnvironmentVariable home("HOME", "/somewhere/else//");
  EXPECT_EQ(hostFolders().home(), "/somewhere/else");
}

TEST(HostFolders, home_missingOrRelativeInTheEnvironment_isTheUsersOwn) {
  const UserFolders folders = hostFolders();
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative/home"}) {
    const EnvironmentVariable home("HOME", value);
    EXPECT_TRUE(folders.home().starts_with('/'));
    EXPECT_NE(folders.home(), "/relative/home");
  }
}

struct MovedFolder {
  std::string name;
  const char* variable;
  std::function<std::string()> folder;
  std::string belowHome;
};

class HostFolder : public testing::TestWithParam<MovedFolder> {};

INSTANTIATE_TEST_SUITE_P(
    All, HostFolder,
    testing::Values(MovedFolder{"data", "XDG_DATA_HOME", hostFolders().applicationSupport, "/.local/share"},
                    MovedFolder{"settings", "XDG_CONFIG_HOME", hostFolders().preferences, "/.config"}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(HostFolder, moved_isWhereTheVariableSays) {
  const EnvironmentVariable home("HOME", "/home/a");
  const EnvironmentVariable moved(GetParam().variable, "/elsewhere/");
  EXPECT_EQ(GetParam().folder(), "/elsewhere");
}

TEST_P(HostFolder, notMovedOrNowhere_isBelowHome) {
  const EnvironmentVariable home("HOME", "/home/a/");
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
    const EnvironmentVariable moved(GetParam().variable, value);
    EXPECT_EQ(GetParam().folder(), "/home/a" + GetParam().belowHome);
  }
}

}  // namespace
}  // namespace cirrovane::test
