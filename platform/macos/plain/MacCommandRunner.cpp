#include "platform/macos/plain/MacCommandRunner.h"

#include "platform/posix/ChildProcess.h"

namespace cirrovane {

std::optional<CommandResult> MacCommandRunner::run(const std::string& executable,
                                                   const std::vector<std::string>& arguments, CommandOutput output,
                                                   TimeLimit limit) const {
  return runChild(placeOf(executable, places_, isExecutableFile), arguments, output, std::nullopt, limit);
}

bool MacCommandRunner::isExecutable(const std::string& path) const {
  return isExecutableFile(placeOf(path, places_, isExecutableFile));
}

}  // namespace cirrovane
