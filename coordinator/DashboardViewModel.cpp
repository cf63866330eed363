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
  environment_.exportNoteAlarm.clear();
  environment_.removalAlarm.clear();
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
  addFolders({*folder});
}

void DashboardViewModel::addFolders(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    watchlist().addFolder(path);
  }
  refresh();
}

void DashboardViewModel::removeFolder(const UUID& id) {
  const auto& folders = watchlist().folders();
  const auto found = std::ranges::find(folders, id, &WatchFolder::id);
  if (found == folders.end()) {
    return;
  }
  std::vector<WatchFolder> removed = removedFolders();
  removed.push_back(*found);
  watchlist().removeFolder(id);
  removedFolders_.set(std::move(removed));
  environment_.removalAlarm.set(kUndoTime, [this] { removedFolders_.set({}); });
  refresh();
}

void DashboardViewModel::restoreRemovedFolders() {
  const std::vector<WatchFolder> removed = removedFolders();
  if (removed.empty()) {
    return;
  }
  environment_.removalAlarm.clear();
  for (const WatchFolder& folder : removed) {
    watchlist().restoreFolder(folder);
  }
  removedFolders_.set({});
  refresh();
}

void DashboardViewModel::exportProofPacket() {
  exportEvidence("Export Proof Packet", jsonFiles(),
                 [](const ProofPacket& packet, const std::string& path, const FileStorage& storage) {
                   const std::optional<Failure> failure = saveProofPacket(packet, storage, path);
                   return failure ? Result<std::string>(*failure)
                                  : "Proof packet exported to " + std::string(lastPathComponent(path)) + ".";
                 });
}

void DashboardViewModel::exportEvidence(const std::string& title, const FileKind& kind, const EvidenceSaver& save) {
  const std::weak_ptr owner = alive_;
  const std::string proposedName =
      "cirrovane-proof-" + environment_.timeText.fileNameStamp(clock_.now()) + "." + kind.suffix;
  const auto path = environment_.panels.chooseFileToSave({title, proposedName, kind});
  if (!path || owner.expired()) {
    return;
  }
  const Result<std::string> note = save(cycle_.proofPacket(), *path, cycle_.fileStorage());
  if (!note) {
    // Stays until the next export, since the user has to do something about it.
    environment_.exportNoteAlarm.clear();
    exportedFile_.reset();
    exportNote_.set("Export failed: " + note.message());
    return;
  }
  exportedFile_ = *path;
  exportNote_.set(*note);
  environment_.exportNoteAlarm.set(kExportNoteLifetime, [this] { clearExportNote(); });
}

void DashboardViewModel::clearExportNote() {
  exportedFile_.reset();
  exportNote_.set(std::nullopt);
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
