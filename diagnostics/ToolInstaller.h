#pragma once

#include "platform/CommandRunner.h"
#include "platform/SystemInformation.h"

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// Finds out which optional tools are installed, and installs them through Homebrew. Callable on any thread; an install
/// takes as long as it takes.
class ToolInstaller {
 public:
  ToolInstaller(const CommandRunner& commandRunner, const SystemInformation& systemInformation)
      : commandRunner_(commandRunner), systemInformation_(systemInformation) {}

  /// Where Homebrew is; absent when it is not installed.
  std::optional<std::string> brewPath() const;

  /// Whether the command is found: a path at that place alone, a name in the search path of the environment and in the
  /// usual folders, which a program that was not started from a shell may not have in its path.
  bool checkInstalled(std::string_view command) const;

  /// Whether Homebrew installed the formula. What it prints is not kept.
  bool runBrewInstall(const std::string& brewPath, std::string_view formula) const;

 private:
  const CommandRunner& commandRunner_;
  const SystemInformation& systemInformation_;
};

}  // namespace cirrovane
