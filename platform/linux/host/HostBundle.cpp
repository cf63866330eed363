#include "platform/linux/host/HostBundle.h"

#include <system_error>

namespace cirrovane {
namespace {

constexpr const char* kDesktopEntry = "com.quillmere.Cirrovane.desktop";

}  // namespace

std::string applicationLocation(const std::filesystem::path& executable) {
  const std::filesystem::path folder = executable.parent_path();
  const std::filesystem::path prefix = folder.parent_path();
  // A build folder has programs in a "bin" too, but offers none of them in a desktop's menu.
  std::error_code error;
  const bool isInstalled =
      folder.filename() == "bin" && std::filesystem::exists(prefix / "share/applications" / kDesktopEntry, error);
  return isInstalled ? prefix / "Cirrovane.app" : executable;
}

std::string HostBundle::location() const {
  std::error_code error;
  return applicationLocation(std::filesystem::read_symlink("/proc/self/exe", error));
}

std::optional<std::string> HostBundle::infoText(std::string_view key) const {
  if (key == "CFBundleShortVersionString") {
    return CIRROVANE_VERSION;
  }
  if (key == "CFBundleVersion") {
    return CIRROVANE_BUILD_NUMBER;
  }
  return std::nullopt;
}

}  // namespace cirrovane
