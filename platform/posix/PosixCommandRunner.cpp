#include "platform/posix/PosixCommandRunner.h"

namespace cirrovane {

std::optional<CommandResult> PosixCommandRunner::run(const std::string& executable,
                                                     const std::vector<std::string>& arguments, CommandOutput output,
                                                     TimeLimit limit) const {
  return runChild(placeOf_(executable), arguments, output, environment_(), limit);
}

bool PosixCommandRunner::isExecutable(const std::string& path) const {
  return isExecutableFile(placeOf_(path));
}

}  // namespace cirrovane
