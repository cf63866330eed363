#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace cirrovane {

/// Why a file or folder stands between the user and a safe close.
enum class BlockerReason : std::uint8_t {
  unavailableFolder,
  outsideICloud,
  unresolvedConflict,
  uploadError,
  downloadError,
  stalledUpload,
  notUploaded,
  notDownloaded,
};

/// Every reason, in declaration order.
inline constexpr std::array kAllBlockerReasons = {
    BlockerReason::unavailableFolder, BlockerReason::outsideICloud, BlockerReason::unresolvedConflict,
    BlockerReason::uploadError,       BlockerReason::downloadError, BlockerReason::stalledUpload,
    BlockerReason::notUploaded,       BlockerReason::notDownloaded,
};

/// The name of the reason in files.
std::string_view rawValue(BlockerReason reason);
/// The reason that a raw value names; false, and the target untouched, for any other text.
bool fromRawValue(std::string_view text, BlockerReason& target);

/// The one text by which every screen, notification and terminal names the reason.
std::string_view displayTitle(BlockerReason reason);

}  // namespace cirrovane
