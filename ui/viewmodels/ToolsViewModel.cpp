#include "ui/viewmodels/ToolsViewModel.h"

#include "coordinator/WebPages.h"
#include "ui/viewmodels/Text.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// nullptr when there is no such row.
const OptionalTool* toolAt(int row) {
  const auto tools = optionalTools();
  return row >= 0 && static_cast<std::size_t>(row) < tools.size() ? &tools[static_cast<std::size_t>(row)] : nullptr;
}

}  // namespace

QString ToolsViewModel::availableText() const {
  return toQString(fmt::format("{} tools available", optionalTools().size()));
}

QString ToolsViewModel::installedText() const {
  return toQString(fmt::format("{} installed", installedCount()));
}

std::size_t ToolsViewModel::installedCount() const {
  if (context() == nullptr) {
    return 0;
  }
  return static_cast<std::size_t>(
      std::ranges::count_if(optionalTools(), [&installs = environment().installs](const OptionalTool& tool) {
        return installs.state(tool.command).isInstalled.value_or(false);
      }));
}

void ToolsViewModel::copyInstallCommand(int row) {
  const OptionalTool* tool = toolAt(row);
  if (tool == nullptr || context() == nullptr) {
    return;
  }
  environment().clipboard.setText(std::string(tool->installCommand));
  copiedAt_[tool->command] = environment().installs.state(tool->command).turns;
  updateNow();
}

void ToolsViewModel::install(int row) {
  const OptionalTool* tool = toolAt(row);
  if (tool != nullptr && context() != nullptr) {
    environment().installs.install(tool->command);
    updateNow();
  }
}

void ToolsViewModel::openHomebrewPage() {
  if (context() != nullptr) {
    environment().workspace.openURL(kHomebrewPage);
  }
}

void ToolsViewModel::begin() {
  follow(environment().installs.publishedStates());
  environment().installs.look();
}

const ToolsEnvironment& ToolsViewModel::environment() const {
  return context()->tools(For<ToolsViewModel>());
}

void ToolsViewModel::update() {
  // Homebrew may have come since the page was opened.
  hasHomebrew_ = environment().installs.brewPath().has_value();
  std::vector<ToolRow> rows;
  for (const OptionalTool& tool : optionalTools()) {
    rows.push_back(rowOf(tool));
  }
  tools_.setRows(std::move(rows));
}

QString ToolsViewModel::statusOf(std::string_view command, const ToolState& state) const {
  const auto copied = copiedAt_.find(command);
  if (copied != copiedAt_.end() && copied->second == state.turns) {
    return QStringLiteral("Command copied");
  }
  if (state.isInstalling) {
    return QStringLiteral("Installing...");
  }
  if (!state.hasSucceeded) {
    return {};
  }
  return *state.hasSucceeded ? QStringLiteral("Install complete") : QStringLiteral("Install failed");
}

ToolRow ToolsViewModel::rowOf(const OptionalTool& tool) const {
  const ToolInstalls& installs = environment().installs;
  const ToolState state = installs.state(tool.command);
  const bool isInstalled = state.isInstalled.value_or(false);
  const bool isUnknown = installs.isLooking() && !state.isInstalled;
  return {.name = toQString(tool.name),
          .state = isUnknown     ? QStringLiteral("Checking")
                   : isInstalled ? QStringLiteral("Installed")
                                 : QStringLiteral("Not Installed"),
          .tone = isUnknown     ? Tone::Info
                  : isInstalled ? Tone::Good
                                : Tone::Neutral,
          .purpose = toQString(tool.purpose),
          .unlocks = toQString(tool.unlocks),
          .installCommand = toQString(tool.installCommand),
          .status = statusOf(tool.command, state),
          .isInstalled = isInstalled,
          .isInstalling = state.isInstalling,
          .canInstall = hasHomebrew_ && !state.isInstalling};
}

}  // namespace cirrovane
