#include "platform/linux/LinuxCommandRunner.h"

#include "platform/posix/ChildProcess.h"

#include <filesystem>

namespace cirrovane {

std::optional<CommandResult> LinuxCommandRunner::run(const std::string& executable,
                                                     const std::vector<std::string>& arguments, CommandOutput output,
                                                     TimeLimit limit) const {
  std::optional<Environment> variables;
  if (const auto described = root_.environment()) {
    variables.emplace();
    for (const auto& [name, value] : *described) {
      variables->emplace_back(name).append("=").append(value);
    }
  }
  return runChild(realPath(executable), arguments, output, variables, limit);
}

bool LinuxCommandRunner::isExecutable(const std::string& path) const {
  return isExecutableFile(realPath(path));
}

std::string LinuxCommandRunner::realPath(const std::string& path) const {
  if (root_.path() == "/" || !path.starts_with('/')) {
    return path;
  }
  // A ".." leads no further up than the Mac's own root.
  const std::string onDisk = std::filesystem::path(path).lexically_normal().native();
  return onDisk.starts_with(root_.path() + "/") ? onDisk : root_.path() + onDisk;
}

}  // namespace cirrovane
