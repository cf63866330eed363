#include "platform/linux/host/AutostartLoginItem.h"

#include "base/Path.h"
#include "platform/linux/host/AutostartEntry.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace cirrovane {
namespace {

/// An entry is small; anything above this is none.
constexpr std::size_t kLargestEntry = std::size_t{1} << 20U;

/// A name alone is looked for in the folders of PATH, as a desktop does.
bool isExecutableProgram(const std::string& program) {
  if (program.find('/') != std::string::npos) {
    return access(program.c_str(), X_OK) == 0;
  }
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable != nullptr ? variable : "/usr/local/bin:/usr/bin:/bin";
  while (!folders.empty()) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    if (access((std::string(folders.substr(0, end)) + "/" + program).c_str(), X_OK) == 0) {
      return true;
    }
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
  return false;
}

}  // namespace

Result<LoginItemState> AutostartLoginItem::state() const {
  if (const Result<std::string> entry = autostartEntry(program_(), /*isHidden=*/false); !entry) {
    return Failure{entry.message()};
  }
  const Result<std::string> entry = storage_.read(path(), kLargestEntry);
  return entry && startsAtLogin(*entry, isExecutableProgram) ? LoginItemState::on : LoginItemState::off;
}

std::optional<Failure> AutostartLoginItem::setOn(bool isOn) {
  const Result<std::string> entry = autostartEntry(program_(), !isOn);
  if (!entry) {
    return Failure{entry.message()};
  }
  const std::string path = this->path();
  if (auto failure = storage_.createFolders(std::string(parentPath(path)), FileAccess::asUsual)) {
    return failure;
  }
  return storage_.writeAtomically(path, FileAccess::asUsual, [&](const ByteSink& sink) { return sink(*entry); });
}

std::string AutostartLoginItem::path() const {
  return settingsFolder_() + "/autostart/com.quillmere.Cirrovane.desktop";
}

std::string runningProgram() {
  std::error_code error;
  std::string path = std::filesystem::read_symlink("/proc/self/exe", error).native();
  constexpr std::string_view kReplaced = " (deleted)";
  if (path.ends_with(kReplaced)) {
    path.resize(path.size() - kReplaced.size());
  }
  return path;
}

}  // namespace cirrovane
