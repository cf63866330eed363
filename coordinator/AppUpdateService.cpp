#include "coordinator/AppUpdateService.h"

#include "base/ASCII.h"
#include "base/TextPieces.h"
#include "coordinator/DefaultsKeys.h"
#include "coordinator/WebPages.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

std::string shortVersion(const Bundle& bundle) {
  return bundle.infoText("CFBundleShortVersionString").value_or("dev");
}

std::string buildNumber(const Bundle& bundle) {
  return bundle.infoText("CFBundleVersion").value_or("0");
}

/// What follows "https://" or "http://", in whatever case; absent when the text begins with neither.
std::optional<std::string_view> afterWebScheme(std::string_view text) {
  for (const std::string_view scheme : {"https://", "http://"}) {
    if (equalIgnoringCase(text.substr(0, scheme.size()), scheme)) {
      return text.substr(scheme.size());
    }
  }
  return std::nullopt;
}

/// Whether an address may have what stands at the position: a plain character, or "%" with its two digits.
bool isAllowedAt(std::string_view text, std::size_t position) {
  const char byte = text[position];
  if (byte == '%') {
    const std::string_view digits = text.substr(position + 1, 2);
    return digits.size() == 2 && std::ranges::all_of(digits, isHexadecimalDigit);
  }
  return byte > ' ' && byte < '\x7f' && std::string_view("\"<>\\^`{|}").find(byte) == std::string_view::npos;
}

/// Whether a browser can open it: an address on the web, of characters that an address may have.
bool isWebAddress(std::string_view text) {
  const std::optional<std::string_view> rest = afterWebScheme(text);
  if (!rest || rest->empty() || rest->find_first_of("/?#") == 0) {
    return false;
  }
  for (std::size_t position = 0; position < rest->size(); ++position) {
    if (!isAllowedAt(*rest, position)) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::string versionLabel(const Bundle& bundle) {
  return fmt::format("v{} ({})", shortVersion(bundle), buildNumber(bundle));
}

bool hasValidSparkleConfig(const Bundle& bundle) {
  const auto isGiven = [&](const char* key) { return !withoutLeadingSpace(bundle.infoText(key).value_or("")).empty(); };
  return isGiven("SUFeedURL") && isGiven("SUPublicEDKey");
}

std::string releasesURL(const Bundle& bundle) {
  const std::optional<std::string> url = bundle.infoText("CirrovaneReleasesURL");
  return url && isWebAddress(*url) ? *url : kDownloadsPage;
}

AppUpdateService::AppUpdateService(const Bundle& bundle, UserDefaults& userDefaults, Workspace& workspace,
                                   const TimeText& timeText, const Clock& clock, const UpdaterFactory& makeUpdater)
    : bundle_(bundle),
      userDefaults_(userDefaults),
      workspace_(workspace),
      timeText_(timeText),
      clock_(clock),
      versionLabel_(cirrovane::versionLabel(bundle)) {
  captureLaunchBuildState();
  if (isApplicationBundle(bundle_) && hasValidSparkleConfig(bundle_)) {
    updaterController_ = makeUpdater();
  }
}

void AppUpdateService::captureLaunchBuildState() {
  const std::string token = fmt::format("{}-{}", shortVersion(bundle_), buildNumber(bundle_));
  const std::optional<std::string> previous = userDefaults_.text(kLastLaunchedBuildKey);
  // A token that could not be stored only makes the next launch look like this one.
  static_cast<void>(userDefaults_.set(kLastLaunchedBuildKey, token));
  updateStatusLine_.set(!previous || *previous == token
                            ? "Running " + versionLabel()
                            : fmt::format("Updated to {} at {}", versionLabel(), shortTimeNow()));
}

void AppUpdateService::checkForUpdates() {
  if (updaterController_) {
    updateStatusLine_.set("Checking for updates at " + shortTimeNow());
    updaterController_->checkForUpdates();
    return;
  }
  updateStatusLine_.set("Opened downloads page at " + shortTimeNow());
  workspace_.openURL(releasesURL(bundle_));
}

}  // namespace cirrovane
