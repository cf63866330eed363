#pragma once

#include "coordinator/DashboardViewModel.h"
#include "coordinator/MakeDashboard.h"
#include "platform/Machine.h"

#include <utility>

namespace cirrovane {

/// A dashboard without a screen: everything is done at once on the calling thread, nothing repeats, nobody is asked and
/// nobody is notified, and no setting is written.
class HeadlessDashboard {
 public:
  HeadlessDashboard(Machine& machine, ScanProgress* progress)
      : HeadlessDashboard(machine, makeDashboardServices(machine, progress)) {}
  /// With services of the caller's own.
  HeadlessDashboard(Machine& machine, DashboardServices services)
      : viewModel_(std::move(services), {{executor_, executor_, executor_, executor_},
                                         timer_,
                                         panels_,
                                         workspace_,
                                         machine.fileSystem(),
                                         machine.fileStorage(),
                                         machine.userDefaults(),
                                         machine.timeText(),
                                         machine.clock()}) {}

  DashboardViewModel& viewModel() { return viewModel_; }

 private:
  struct NoTimer final : Timer {
    void start(std::chrono::milliseconds /*interval*/, std::function<void()> /*tick*/) override {}
    void stop() override {}
  };
  struct NoPanels final : Panels {
    std::optional<std::string> chooseFolder(const FolderPanel& /*panel*/) override { return std::nullopt; }
    std::optional<std::string> chooseFileToSave(const SavePanel& /*panel*/) override { return std::nullopt; }
  };
  struct NoWorkspace final : Workspace {
    void reveal(const std::string& /*path*/) override {}
    void openURL(const std::string& /*url*/) override {}
  };

  InlineExecutor executor_;
  NoTimer timer_;
  NoPanels panels_;
  NoWorkspace workspace_;
  DashboardViewModel viewModel_;
};

}  // namespace cirrovane
