#include "ui/viewmodels/ToolInstalls.h"

#include "diagnostics/OptionalTool.h"

#include <algorithm>
#include <utility>

namespace cirrovane {

ToolInstalls::ToolInstalls(const ToolInstaller& installer, Executor& mainExecutor)
    : ToolInstalls(installer, mainExecutor, runDetached) {}

ToolState ToolInstalls::state(std::string_view command) const {
  const auto found = states_.value().find(command);
  return found != states_.value().end() ? found->second : ToolState();
}

void ToolInstalls::look() {
  if (std::exchange(isLooking_, true)) {
    return;
  }
  inBackground(
      [installer = installer_] {
        std::map<std::string_view, bool> installed;
        for (const OptionalTool& tool : optionalTools()) {
          installed[tool.command] = installer.checkInstalled(tool.command);
        }
        return installed;
      },
      [this](const std::map<std::string_view, bool>& installed) {
        isLooking_ = false;
        ToolStates states = states_.value();
        for (const auto& [command, isInstalled] : installed) {
          states[command].isInstalled = isInstalled;
        }
        states_.set(std::move(states));
      });
}

void ToolInstalls::install(std::string_view command) {
  const auto tools = optionalTools();
  const auto tool = std::ranges::find(tools, command, &OptionalTool::command);
  const std::optional<std::string> brew = brewPath();
  if (tool == tools.end() || !brew || state(command).isInstalling) {
    return;
  }
  change(tool->command, [](ToolState& state) {
    state.isInstalling = true;
    state.hasSucceeded.reset();
  });
  inBackground(
      [installer = installer_, brew = *brew, formula = tool->name, command = tool->command] {
        const bool hasSucceeded = installer.runBrewInstall(brew, formula);
        return std::pair(hasSucceeded, installer.checkInstalled(command));
      },
      [this, command = tool->command](const std::pair<bool, bool>& result) {
        finishInstall(command, result.first, result.second);
      });
}

void ToolInstalls::finishInstall(std::string_view command, bool hasSucceeded, bool isInstalled) {
  change(command, [&](ToolState& state) {
    state.isInstalling = false;
    state.hasSucceeded = hasSucceeded;
    state.isInstalled = isInstalled;
  });
}

void ToolInstalls::change(std::string_view command, const std::function<void(ToolState&)>& by) {
  ToolStates states = states_.value();
  ToolState& state = states[command];
  by(state);
  ++state.turns;
  states_.set(std::move(states));
}

template <class Work, class Finish>
void ToolInstalls::inBackground(Work work, Finish finish) {
  background_(
      [work = std::move(work), finish = std::move(finish), &main = mainExecutor_, alive = std::weak_ptr(alive_)] {
        main.post([result = work(), finish, alive] {
          if (!alive.expired()) {
            finish(result);
          }
        });
      });
}

}  // namespace cirrovane
