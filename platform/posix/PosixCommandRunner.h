#pragma once

#include "platform/CommandRunner.h"
#include "platform/linux/macroot/MacRoot.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Real child processes. Their programs, and nothing else, lie inside of a Mac root, and a path of the Mac's disk leads
/// there; the environment is the one that the root describes.
class LinuxCommandRunner final : public CommandRunner {
 public:
  explicit LinuxCommandRunner(const MacRoot& root) : root_(root) {}

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override;
  bool isExecutable(const std::string& path) const override;

 private:
  /// Where an absolute path of the Mac's disk really is. A path that is inside of the root already stays as it is.
  std::string realPath(const std::string& path) const;

  const MacRoot& root_;
};

}  // namespace cirrovane
