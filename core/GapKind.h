#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace cirrovane {

/// What a verdict does not vouch for, the most pressing first.
enum class GapKind : std::uint8_t {
  pendingPackage,
  pendingHidden,
  syncPaused,
  excluded,
  stateUnknown,
  notInICloud,
  unreadableFolder,
  filesLost,
};

/// Every kind, in declaration order.
inline constexpr std::array kAllGapKinds = {
    GapKind::pendingPackage, GapKind::pendingHidden, GapKind::syncPaused,       GapKind::excluded,
    GapKind::stateUnknown,   GapKind::notInICloud,   GapKind::unreadableFolder, GapKind::filesLost,
};

/// The name of the kind in files.
std::string_view rawValue(GapKind kind);
/// The kind that a raw value names; false, and the target untouched, for any other text.
bool fromRawValue(std::string_view text, GapKind& target);

/// The one text by which every screen and terminal names the kind.
std::string_view displayTitle(GapKind kind);
/// Why it matters, as a sentence.
std::string_view meaningOf(GapKind kind);
/// What to do about it, as a sentence.
std::string_view remedyFor(GapKind kind);

/// Whether such a gap may close by itself, given time.
bool canClose(GapKind kind);

}  // namespace cirrovane
