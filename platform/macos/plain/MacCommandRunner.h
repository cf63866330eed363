#pragma once

#include "platform/CommandRunner.h"
#include "platform/macos/plain/AlternativePlaces.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace cirrovane {

/// Real child processes, with our environment. A program that macOS keeps elsewhere than at the asked path is found
/// where it is.
class MacCommandRunner final : public CommandRunner {
 public:
  explicit MacCommandRunner(std::span<const AlternativePlace> places = alternativePlaces()) : places_(places) {}

  std::optional<CommandResult> run(const std::string& executable, const std::vector<std::string>& arguments,
                                   CommandOutput output, TimeLimit limit) const override;
  bool isExecutable(const std::string& path) const override;

 private:
  std::span<const AlternativePlace> places_;
};

}  // namespace cirrovane
