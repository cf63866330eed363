#include "stores/ProofPacket.h"

#include "base/JSONWriter.h"

#include <algorithm>

namespace cirrovane {

std::vector<ScanSnapshot> packetHistory(const std::vector<ScanSnapshot>& snapshots) {
  const std::size_t count = std::min(snapshots.size(), ProofPacket::kMaximumHistory);
  return {snapshots.begin(), snapshots.begin() + static_cast<std::ptrdiff_t>(count)};
}

bool writeProofPacket(const ProofPacket& packet, const ByteSink& sink) {
  JSONWriter writer(sink);
  writer.write(packet);
  return writer.finish() && sink("\n");
}

std::optional<Failure> saveProofPacket(const ProofPacket& packet, const FileStorage& storage, const std::string& path) {
  return storage.writeAtomically(path, FileAccess::asUsual,
                                 [&](const ByteSink& sink) { return writeProofPacket(packet, sink); });
}

}  // namespace cirrovane
