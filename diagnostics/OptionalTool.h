#pragma once

#include <span>
#include <string_view>

namespace cirrovane {

/// A command-line tool that deepens the diagnostics where the user has it.
struct OptionalTool {
  /// Also the package manager's name for it.
  std::string_view name;
  /// The executable whose presence means that the tool is installed; identifies the tool.
  std::string_view command;
  /// What a user would type to install it.
  std::string_view installCommand;
  std::string_view purpose;
  /// What this program gains from it.
  std::string_view unlocks;
};

/// Every tool, in the order in which they are shown.
std::span<const OptionalTool> optionalTools();

}  // namespace cirrovane
