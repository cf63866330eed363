#include "platform/macos/plain/PackageExtensions.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

class AskedPackages : public testing::Test {
 protected:
  std::vector<std::string> asked_;
  PackageExtensions packages_{[this](std::string_view extension) {
    asked_.emplace_back(extension);
    return extension == "app" || extension == "APP";
  }};
};

TEST_F(AskedPackages, nameWithTheEndingOfAPackage_isOne) {
  EXPECT_TRUE(packages_.isPackageName("A.app"));
  EXPECT_TRUE(packages_.isPackageName("B.x.app"));
  EXPECT_FALSE(packages_.isPackageName("C.app.d"));
}

TEST_F(AskedPackages, sameEnding_isAskedAboutOnce) {
  for (int time = 0; time < 3; ++time) {
    EXPECT_TRUE(packages_.isPackageName("A.app"));
    EXPECT_FALSE(packages_.isPackageName("v1.2"));
    EXPECT_TRUE(packages_.isPackageName("A.APP"));
  }
  EXPECT_EQ(asked_, (std::vector<std::string>{"app", "2", "APP"}));
}

TEST_F(AskedPackages, nameWithoutAnEnding_isNoneAndNotAskedAbout) {
  for (const char* name : {"app", "Work", "", ".app", "app."}) {
    EXPECT_FALSE(packages_.isPackageName(name)) << name;
  }
  EXPECT_TRUE(asked_.empty());
}

TEST_F(AskedPackages, manyThreadsAtOnce_askOnce) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([this] {
      for (int time = 0; time < 100; ++time) {
        EXPECT_TRUE(packages_.isPackageName("A.app"));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(asked_, std::vector<std::string>{"app"});
}

}  // namespace
}  // namespace cirrovane
