#include "coordinator/AppUpdateService.h"
#include "platform/linux/host/LinuxUserDefaults.h"
#include "platform/posix/PosixFileStorage.h"
#include "tests/support/FakeBundle.h"
#include "tests/support/FakeTimeText.h"
#include "tests/support/FakeUpdater.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kToken = "Cirrovane.lastLaunchedBuildToken";
constexpr const char* kDefaultPage = "https://cirrovane.example.com/downloads";

Time atNineFortyOne() {
  return Time(std::chrono::sys_days(std::chrono::year(2026) / 11 / 15)) + std::chrono::hours(9) +
         std::chrono::minutes(41);
}

class AppUpdate : public testing::Test {
 protected:
  AppUpdate() { setVersion("1.2", "45"); }

  void setVersion(const std::string& version, const std::string& build) {
    bundle_.info["CFBundleShortVersionString"] = version;
    bundle_.info["CFBundleVersion"] = build;
  }
  void configureSparkle() {
    bundle_.info["SUFeedURL"] = "https://example.com/appcast.xml";
    bundle_.info["SUPublicEDKey"] = "a2V5";
  }
  void setReleasesURL(const std::string& url) { bundle_.info["CirrovaneReleasesURL"] = url; }

  std::unique_ptr<AppUpdateService> launch() { return launch(timeText_); }
  std::unique_ptr<AppUpdateService> launch(const TimeText& timeText) {
    return std::make_unique<AppUpdateService>(bundle_, defaults_, workspace_, timeText, clock_, [this] {
      whenUpdaterStarts();
      ++updatersStarted_;
      return std::make_unique<FakeUpdater>([this] { whenChecking(); });
    });
  }

  FakeBundle bundle_;
  FakeUserDefaults defaults_;
  FakeWorkspace workspace_;
  FakeTimeText timeText_;
  ManualClock clock_{atNineFortyOne()};
  int updatersStarted_ = 0;
  std::function<void()> whenUpdaterStarts = [] {};
  std::function<void()> whenChecking = [] {};
};

TEST_F(AppUpdate, firstLaunchEver_isRunning) {
  const auto service = launch();
  EXPECT_EQ(service->versionLabel(), "v1.2 (45)");
  EXPECT_EQ(service->updateStatusLine(), "Running v1.2 (45)");
  EXPECT_EQ(defaults_.values().at(kToken), DefaultsValue("1.2-45"));
}

TEST_F(AppUpdate, sameBuildAgain_isRunning) {
  launch();
  EXPECT_EQ(launch()->updateStatusLine(), "Running v1.2 (45)");
}

TEST_F(AppUpdate, launchOfAnotherBuild_isUpdatedAtTheTimeOnceOnly) {
  launch();
  setVersion("1.2", "46");
  EXPECT_EQ(launch()->updateStatusLine(), "Updated to v1.2 (46) at 9:41 AM");
  EXPECT_EQ(defaults_.values().at(kToken), DefaultsValue("1.2-46"));
  EXPECT_EQ(launch()->updateStatusLine(), "Running v1.2 (46)");
}

TEST_F(AppUpdate, launchOfAnotherVersionOfOneBuild_isUpdated) {
  launch();
  setVersion("1.3", "45");
  EXPECT_EQ(launch()->updateStatusLine(), "Updated to v1.3 (45) at 9:41 AM");
}

TEST_F(AppUpdate, launchOfAnOlderBuild_isUpdatedToo) {
  launch();
  setVersion("1.1", "40");
  EXPECT_EQ(launch()->updateStatusLine(), "Updated to v1.1 (40) at 9:41 AM");
}

TEST_F(AppUpdate, token_isReadAndThenStoredAtEveryLaunch) {
  launch();
  launch();
  EXPECT_THAT(defaults_.log(),
              ElementsAre("read Cirrovane.lastLaunchedBuildToken", "set Cirrovane.lastLaunchedBuildToken",
                          "read Cirrovane.lastLaunchedBuildToken", "set Cirrovane.lastLaunchedBuildToken"));
}

/// Tells what was stored when somebody asked for the time, which the line on an update holds.
class WatchfulTimeText final : public TimeText {
 public:
  explicit WatchfulTimeText(const FakeUserDefaults& defaults) : defaults_(defaults) {}

  std::string shortTime(Time) const override { return std::get<std::string>(defaults_.values().at(kToken)); }
  std::string timeOfDay(Time) const override { return {}; }
  std::string dayAndTime(Time) const override { return {}; }
  std::string fileNameStamp(Time) const override { return {}; }

 private:
  const FakeUserDefaults& defaults_;
};

TEST_F(AppUpdate, token_isStoredBeforeTheLineIsMade) {
  launch();
  setVersion("1.2", "46");
  EXPECT_EQ(launch(WatchfulTimeText(defaults_))->updateStatusLine(), "Updated to v1.2 (46) at 1.2-46");
}

TEST_F(AppUpdate, tokenThatCannotBeStored_isNoError) {
  defaults_.hold(kToken, "1.2-44");
  defaults_.failure = Failure{"disk full"};
  EXPECT_EQ(launch()->updateStatusLine(), "Updated to v1.2 (45) at 9:41 AM");
}

TEST_F(AppUpdate, storedTokenOfAnotherKind_countsAsNone) {
  defaults_.hold(kToken, true);
  EXPECT_EQ(launch()->updateStatusLine(), "Running v1.2 (45)");
  EXPECT_EQ(defaults_.values().at(kToken), DefaultsValue("1.2-45"));
}

TEST_F(AppUpdate, noVersionInTheBundle_isADevelopersBuild) {
  bundle_.info.clear();
  const auto service = launch();
  EXPECT_EQ(service->versionLabel(), "vdev (0)");
  EXPECT_EQ(service->updateStatusLine(), "Running vdev (0)");
  EXPECT_EQ(defaults_.values().at(kToken), DefaultsValue("dev-0"));
}

TEST_F(AppUpdate, halfAVersion_isCompleted) {
  bundle_.info = {{"CFBundleVersion", "7"}};
  EXPECT_EQ(versionLabel(bundle_), "vdev (7)");
  bundle_.info = {{"CFBundleShortVersionString", "2.0"}};
  EXPECT_EQ(versionLabel(bundle_), "v2.0 (0)");
}

TEST_F(AppUpdate, sparkleConfig_needsBothTextsAndNeitherBlank) {
  const std::vector<std::string> blanks = {"", " ", "\t\r\n", "\v\f", " \xC2\xA0 ", "\xE2\x80\xA8\xE3\x80\x80\xC2\x85"};
  const auto isValid = [&](const std::string& feed, const std::string& key) {
    bundle_.info["SUFeedURL"] = feed;
    bundle_.info["SUPublicEDKey"] = key;
    return hasValidSparkleConfig(bundle_);
  };
  EXPECT_FALSE(hasValidSparkleConfig(bundle_));
  EXPECT_TRUE(isValid("https://example.com/appcast.xml", "a2V5"));
  EXPECT_TRUE(isValid(" x ", "\ny\n"));
  for (const std::string& blank : blanks) {
    EXPECT_FALSE(isValid(blank, "a2V5")) << '"' << blank << '"';
    EXPECT_FALSE(isValid("https://example.com/appcast.xml", blank)) << '"' << blank << '"';
  }
}

TEST_F(AppUpdate, sparkleConfig_withoutEitherKey_isInvalid) {
  for (const char* key : {"SUFeedURL", "SUPublicEDKey"}) {
    configureSparkle();
    bundle_.info.erase(key);
    EXPECT_FALSE(hasValidSparkleConfig(bundle_)) << key;
  }
}

TEST_F(AppUpdate, configuredBundle_startsTheUpdaterAfterTheLaunchIsRecorded) {
  configureSparkle();
  std::vector<std::string> atStart;
  whenUpdaterStarts = [&] { atStart = defaults_.log(); };
  launch();
  EXPECT_EQ(updatersStarted_, 1);
  EXPECT_EQ(atStart.size(), 2U);
}

TEST_F(AppUpdate, bareExecutable_neverGetsAnUpdater) {
  configureSparkle();
  for (const char* path : {"/usr/local/bin/cirrovane", "/Applications/Cirrovane.App", "/Applications/app", ""}) {
    bundle_.path = path;
    launch()->checkForUpdates();
  }
  EXPECT_EQ(updatersStarted_, 0);
  EXPECT_EQ(workspace_.opened().size(), 4U);
}

TEST_F(AppUpdate, keyOfBlanks_givesNoUpdaterAndOpensTheReleasesPage) {
  configureSparkle();
  bundle_.info["SUPublicEDKey"] = "  ";
  const auto service = launch();
  service->checkForUpdates();
  EXPECT_EQ(updatersStarted_, 0);
  EXPECT_THAT(workspace_.opened(), ElementsAre(kDefaultPage));
}

TEST_F(AppUpdate, checkWithoutAnUpdater_opensTheBundlesPageAndSaysSo) {
  setReleasesURL("https://example.com/releases");
  const auto service = launch();
  clock_.advance(std::chrono::hours(4));
  service->checkForUpdates();
  EXPECT_EQ(service->updateStatusLine(), "Opened downloads page at 1:41 PM");
  EXPECT_THAT(workspace_.opened(), ElementsAre("https://example.com/releases"));
}

TEST_F(AppUpdate, checkWithAnUpdater_saysSoAndThenHandsOver) {
  configureSparkle();
  const auto service = launch();
  std::vector<std::string> lineAtCheck;
  whenChecking = [&] { lineAtCheck.push_back(service->updateStatusLine()); };
  clock_.advance(std::chrono::minutes(1));
  service->checkForUpdates();
  EXPECT_THAT(lineAtCheck, ElementsAre("Checking for updates at 9:42 AM"));
  EXPECT_EQ(service->updateStatusLine(), "Checking for updates at 9:42 AM");
  EXPECT_THAT(workspace_.opened(), IsEmpty());
}

TEST_F(AppUpdate, systemWithoutAnUpdater_opensThePage) {
  configureSparkle();
  AppUpdateService service(bundle_, defaults_, workspace_, timeText_, clock_, [] { return nullptr; });
  service.checkForUpdates();
  EXPECT_EQ(service.updateStatusLine(), "Opened downloads page at 9:41 AM");
  EXPECT_THAT(workspace_.opened(), ElementsAre(kDefaultPage));
}

TEST_F(AppUpdate, statusLine_isToldToObserversBeforeItChanges) {
  const auto service = launch();
  std::vector<std::string> seen;
  const Subscription subscription = service->publishedUpdateStatusLine().observe([&](const std::string& next) {
    seen.push_back(service->updateStatusLine());
    seen.push_back(next);
  });
  service->checkForUpdates();
  EXPECT_THAT(seen, ElementsAre("Running v1.2 (45)", "Opened downloads page at 9:41 AM"));
}

TEST_F(AppUpdate, releasesURL_isTheBundlesWhereABrowserCanOpenIt) {
  for (const char* url : {"https://example.com", "http://example.com/releases?channel=beta#latest",
                          "HTTPS://Example.com/", "https://[::1]:8080/a%20b"}) {
    setReleasesURL(url);
    EXPECT_EQ(releasesURL(bundle_), url);
  }
}

TEST_F(AppUpdate, releasesURL_thatIsNone_isTheDefaultPage) {
  EXPECT_EQ(releasesURL(bundle_), kDefaultPage);
  for (const char* url :
       {"", " ", "releases", "https://", "https:///releases", "https:// example.com", "https://example.com/a b",
        "https://example.com/\n", "example.com/releases", "https://example.com/<page>", "https//example.com",
        "https://example.com/100%", "https://example.com/%zz"}) {
    setReleasesURL(url);
    EXPECT_EQ(releasesURL(bundle_), kDefaultPage) << url;
  }
}

TEST(AppUpdateAcrossLaunches, token_isRememberedOnTheDisk) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const PosixFileStorage storage;
  const FakeTimeText timeText;
  const ManualClock clock(atNineFortyOne());
  FakeWorkspace workspace;
  FakeBundle bundle;
  const auto lineOfBuild = [&](const std::string& build) {
    bundle.info["CFBundleVersion"] = build;
    LinuxUserDefaults defaults([&] { return folder.path(); }, storage);
    return AppUpdateService(bundle, defaults, workspace, timeText, clock, [] { return nullptr; }).updateStatusLine();
  };
  EXPECT_EQ(lineOfBuild("45"), "Running vdev (45)");
  EXPECT_EQ(lineOfBuild("46"), "Updated to vdev (46) at 9:41 AM");
  EXPECT_EQ(lineOfBuild("46"), "Running vdev (46)");
}

}  // namespace
}  // namespace cirrovane::test
