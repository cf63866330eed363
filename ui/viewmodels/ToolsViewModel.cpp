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

ToolsViewModel::ToolsViewModel(QObject* parent) : ToolsViewModel(runDetached, parent) {}

ToolsViewModel::ToolsViewModel(Background background, QObject* parent)
    : PageViewModel(parent), background_(std::move(background)) {}

QString ToolsViewModel::availableText() const {
  return toQString(fmt::format("{} tools available", optionalTools().size()));
}

QString ToolsViewModel::installedText() const {
  return toQString(fmt::format("{} installed", installedCount()));
}

std::size_t ToolsViewModel::installedCount() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(installedByCommand_, [](const auto& known) { return known.second; }));
}

void ToolsViewModel::copyInstallCommand(int row) {
  const OptionalTool* tool = toolAt(row);
  if (tool == nullptr || context() == nullptr) {
    return;
  }
  environment().clipboard.setText(std::string(tool->installCommand));
  statusByCommand_[tool->command] = QStringLiteral("Command copied");
  updateNow();
}

void ToolsViewModel::install(int row) {
  const OptionalTool* tool = toolAt(row);
  if (tool == nullptr || !brewPath_ || !installing_.insert(tool->command).second) {
    return;
  }
  statusByCommand_[tool->command] = QStringLiteral("Installing...");
  updateNow();
  inBackground(
      [installer = environment().installer, brewPath = *brewPath_, tool] {
        const bool hasSucceeded = installer.runBrewInstall(brewPath, tool->name);
        return std::pair(hasSucceeded, installer.checkInstalled(tool->command));
      },
      [this, tool](const std::pair<bool, bool>& result) { finishInstall(tool->command, result.first, result.second); });
}

void ToolsViewModel::openHomebrewPage() {
  if (context() != nullptr) {
    environment().workspace.openURL(kHomebrewPage);
  }
}

void ToolsViewModel::begin() {
  refreshInstalledStates();
}

const ToolsEnvironment& ToolsViewModel::environment() const {
  return context()->tools(For<ToolsViewModel>());
}

void ToolsViewModel::update() {
  // Homebrew may have come since the page was opened.
  brewPath_ = environment().installer.brewPath();
  std::vector<ToolRow> rows;
  for (const OptionalTool& tool : optionalTools()) {
    rows.push_back(rowOf(tool));
  }
  tools_.setRows(std::move(rows));
}

void ToolsViewModel::refreshInstalledStates() {
  isChecking_ = true;
  inBackground(
      [installer = environment().installer] {
        std::map<std::string_view, bool> installed;
        for (const OptionalTool& tool : optionalTools()) {
          installed[tool.command] = installer.checkInstalled(tool.command);
        }
        return installed;
      },
      [this](const std::map<std::string_view, bool>& installed) {
        installedByCommand_ = installed;
        isChecking_ = false;
        updateNow();
      });
}

void ToolsViewModel::finishInstall(std::string_view command, bool hasSucceeded, bool isInstalled) {
  installing_.erase(command);
  statusByCommand_[command] = hasSucceeded ? QStringLiteral("Install complete") : QStringLiteral("Install failed");
  installedByCommand_[command] = isInstalled;
  updateNow();
}

ToolRow ToolsViewModel::rowOf(const OptionalTool& tool) const {
  const auto known = installedByCommand_.find(tool.command);
  const bool isInstalled = known != installedByCommand_.end() && known->second;
  const bool isUnknown = isChecking_ && known == installedByCommand_.end();
  const auto status = statusByCommand_.find(tool.command);
  const bool isInstalling = installing_.contains(tool.command);
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
          .status = status != statusByCommand_.end() ? status->second : QString(),
          .isInstalled = isInstalled,
          .isInstalling = isInstalling,
          .canInstall = brewPath_.has_value() && !isInstalling};
}

template <class Work, class Finish>
void ToolsViewModel::inBackground(Work work, Finish finish) {
  background_([work = std::move(work), finish = std::move(finish), &main = environment().mainExecutor,
               alive = std::weak_ptr(alive_)] {
    main.post([result = work(), finish, alive] {
      if (!alive.expired()) {
        finish(result);
      }
    });
  });
}

}  // namespace cirrovane
