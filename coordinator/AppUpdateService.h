#pragma once

#include "base/Published.h"
#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/TimeText.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <memory>
#include <string>

namespace cirrovane {

/// "v1.2 (45)" of the running build; "vdev (0)" where the bundle does not tell.
std::string versionLabel(const Bundle& bundle);

/// Whether the bundle says where updates come from, and with which key they are signed.
bool hasValidSparkleConfig(const Bundle& bundle);

/// The web page that offers releases: the bundle's own, where it names one that a browser can open.
std::string releasesURL(const Bundle& bundle);

/// Which build runs, whether it is a new one, and the way to the next. Main thread only.
class AppUpdateService {
 public:
  /// Remembers this build as the one launched last. The updater is only started in an application bundle that is set up
  /// for it.
  AppUpdateService(const Bundle& bundle, UserDefaults& userDefaults, Workspace& workspace, const TimeText& timeText,
                   const Clock& clock, const UpdaterFactory& makeUpdater);

  const std::string& versionLabel() const { return versionLabel_; }

  /// One line on the launch or the latest action.
  const std::string& updateStatusLine() const { return updateStatusLine_.value(); }
  const Published<std::string>& publishedUpdateStatusLine() const { return updateStatusLine_; }

  /// Hands over to the updater, or opens the releases page where there is none.
  void checkForUpdates();

 private:
  void captureLaunchBuildState();
  std::string shortTimeNow() const { return timeText_.shortTime(clock_.now()); }

  const Bundle& bundle_;
  UserDefaults& userDefaults_;
  Workspace& workspace_;
  const TimeText& timeText_;
  const Clock& clock_;
  std::unique_ptr<Updater> updaterController_;
  std::string versionLabel_;
  Published<std::string> updateStatusLine_;
};

}  // namespace cirrovane
