#pragma once

#include "base/JSONRecord.h"
#include "base/Shared.h"
#include "core/SyncHealthReport.h"
#include "diagnostics/DiagnosticFinding.h"
#include "diagnostics/SystemStatusSnapshot.h"
#include "platform/FileStorage.h"
#include "stores/IncidentRecord.h"
#include "stores/ScanSnapshot.h"

#include <cstddef>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace cirrovane {

/// Everything known at one moment about whether it was safe to close the machine, for whoever has to judge it later.
struct ProofPacket {
  /// The newest snapshots that a packet holds.
  static constexpr std::size_t kMaximumHistory = 50;

  Time exportedAt;
  Shared<SyncHealthReport> report;
  /// Newest first.
  std::vector<ScanSnapshot> history;
  /// In the order of presentation.
  std::vector<DiagnosticFinding> diagnostics;
  /// Resolved ones included.
  std::vector<IncidentRecord> incidents;
  SystemStatusSnapshot systemStatus;

  static constexpr auto jsonFields() {
    return std::tuple{
        JSONField{"exportedAt", &ProofPacket::exportedAt}, JSONField{"report", &ProofPacket::report},
        JSONField{"history", &ProofPacket::history},       JSONField{"diagnostics", &ProofPacket::diagnostics},
        JSONField{"incidents", &ProofPacket::incidents},   JSONField{"systemStatus", &ProofPacket::systemStatus}};
  }
  friend bool operator==(const ProofPacket&, const ProofPacket&) = default;
};

/// The newest snapshots of a history that are to go into a packet.
std::vector<ScanSnapshot> packetHistory(const std::vector<ScanSnapshot>& snapshots);

/// Writes the packet as JSON with a line end; false when the sink refused a part of it. Needs little memory besides the
/// packet, however large that is.
bool writeProofPacket(const ProofPacket& packet, const ByteSink& sink);

/// Puts the packet in place of the file at the path, whole or, on failure, not at all.
std::optional<Failure> saveProofPacket(const ProofPacket& packet, const FileStorage& storage, const std::string& path);

}  // namespace cirrovane
