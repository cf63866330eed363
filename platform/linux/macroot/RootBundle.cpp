#include "platform/linux/LinuxBundle.h"

#include <filesystem>
#include <system_error>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

constexpr const char* kDesktopEntry = "com.quillmere.Cirrovane.desktop";

std::string hostLocation() {
  std::error_code error;
  return applicationLocation(std::filesystem::read_symlink("/proc/self/exe", error));
}

std::optional<std::string> hostInfo(std::string_view key) {
  if (key == "CFBundleShortVersionString") {
    return CIRROVANE_VERSION;
  }
  if (key == "CFBundleVersion") {
    return CIRROVANE_BUILD_NUMBER;
  }
  return std::nullopt;
}

std::optional<std::string> textMember(const json& object, std::string_view key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
}

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

std::string LinuxBundle::location() const {
  if (root_.describesHost()) {
    return hostLocation();
  }
  return textMember(root_.facts().value("bundle", json::object()), "path").value_or("");
}

std::optional<std::string> LinuxBundle::infoText(std::string_view key) const {
  if (root_.describesHost()) {
    return hostInfo(key);
  }
  const json bundle = root_.facts().value("bundle", json::object());
  const auto info = bundle.find("info");
  return info != bundle.end() && info->is_object() ? textMember(*info, key) : std::nullopt;
}

}  // namespace cirrovane
