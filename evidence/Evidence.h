#pragma once

#include "base/ByteSource.h"
#include "evidence/PageContent.h"
#include "evidence/Redaction.h"
#include "platform/FileStorage.h"
#include "stores/ProofPacket.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace cirrovane {

/// What is to be made of a packet, in one pass over it.
struct EvidenceForm {
  Redaction redaction = Redaction::none;
  /// Takes the packet as JSON; none when it is not wanted.
  ByteSink packet = nullptr;
  /// Takes what a page shows; nullptr when none is wanted.
  PageContent* page = nullptr;
};

/// Makes of a packet what the form asks for; a failure when the packet is none, or the sink refused a part of it.
using EvidenceMaker = std::function<std::optional<Failure>(const EvidenceForm&)>;

/// Of a packet in memory, which outlives the maker, about the user whose home folder this is.
EvidenceMaker evidenceOf(const ProofPacket& packet, std::string home);
/// Of a packet that somebody may have sent. Can be used once.
EvidenceMaker evidenceFrom(ByteSource source);

/// Where evidence goes: absolute paths, absent for what is not wanted. "-" is the output, whose reader may go early.
struct EvidenceFiles {
  std::optional<std::string> packet;
  std::optional<std::string> page;
  ByteSink output = nullptr;
};

/// Puts the files in place, each whole or, on failure, not at all. Without the packet there is no page either.
std::optional<Failure> saveEvidence(const EvidenceMaker& make, Redaction redaction, const EvidenceFiles& files,
                                    const FileStorage& storage);

/// The first lines of the packet as it will be.
std::string packetPreview(const ProofPacket& packet, const std::string& home, Redaction redaction,
                          std::size_t mostLines);
/// The first words of the page as it will be.
std::string pagePreview(const ProofPacket& packet, const std::string& home, Redaction redaction);

}  // namespace cirrovane
