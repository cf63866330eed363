#include "coordinator/DashboardViewModel.h"

#include "base/Path.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cirrovane {

DashboardViewModel::DashboardViewModel(Services services, const RefreshEnvironment& refreshEnvironment,
                                       const DashboardEnvironment& environment)
    : cycle_(std::move(services), refreshEnvironment), environment_(environment), clock_(refreshEnvironment.clock) {}

DashboardViewModel::~DashboardViewModel() {
  if (hasStartedAutoRefresh_) {
    environment_.refreshTimer.stop();
  }
}

void DashboardViewModel::surfaceAppeared() {
  if (!hasStartedAutoRefresh_) {
    hasStartedAutoRefresh_ = true;
    configureRefreshTimer();
  }
  refresh(CycleCause::regular);
}

void DashboardViewModel::configureRefreshTimer() {
  environment_.refreshTimer.start(kRefreshInterval, [this, owner = std::weak_ptr(alive_)] {
    if (!owner.expired()) {
      refresh(CycleCause::regular);
    }
  });
}

void DashboardViewModel::addFolderFromPanel() {
  const std::weak_ptr owner = alive_;
  const auto folder = environment_.panels.chooseFolder({"Add Critical Folder", "Add to Watchlist"});
  // The panel handles events, and one of them may have ended everything.
  if (!folder || owner.expired()) {
    return;
  }
  watchlist().addFolder(*folder);
  refresh();
}

void DashboardViewModel::exportProofPacket() {
  const std::weak_ptr owner = alive_;
  const std::string proposedName = "cirrovane-proof-" + environment_.timeText.fileNameStamp(clock_.now()) + ".json";
  const auto path = environment_.panels.chooseFileToSave({"Export Proof Packet", proposedName});
  if (!path || owner.expired()) {
    return;
  }
  const std::optional<Failure> failure = cycle_.exportProofPacket(*path);
  exportNote_.set(failure ? "Export failed: " + failure->message
                          : "Proof packet exported to " + std::string(lastPathComponent(*path)) + ".");
}

void DashboardViewModel::revealInFinder(const std::string& path) {
  if (environment_.fileSystem.exists(path)) {
    environment_.workspace.reveal(path);
  }
}

std::vector<DiagnosticFinding> DashboardViewModel::diagnostics(DiagnosticDomain domain) const {
  std::vector<DiagnosticFinding> found;
  std::ranges::copy_if(diagnostics(), std::back_inserter(found),
                       [&](const DiagnosticFinding& finding) { return finding.domain == domain; });
  return found;
}

}  // namespace cirrovane
