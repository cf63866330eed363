#include "core/GapKind.h"

#include "base/JSONRecord.h"

#include <cstddef>

namespace cirrovane {
namespace {

// Both in declaration order, so that a kind is its own index.
constexpr std::array<RawValue<GapKind>, kAllGapKinds.size()> kGapRawValues = {{
    {GapKind::pendingPackage, "pendingPackage"},
    {GapKind::pendingHidden, "pendingHidden"},
    {GapKind::syncPaused, "syncPaused"},
    {GapKind::excluded, "excluded"},
    {GapKind::stateUnknown, "stateUnknown"},
    {GapKind::notInICloud, "notInICloud"},
    {GapKind::unreadableFolder, "unreadableFolder"},
    {GapKind::filesLost, "filesLost"},
}};

struct GapWords {
  std::string_view title;
  std::string_view meaning;
  std::string_view remedy;
};

constexpr std::array<GapWords, kAllGapKinds.size()> kGapWords = {{
    {"Package Not Uploaded", "Something in this document or library has not reached iCloud.",
     "Keep this Mac awake and online until it has."},
    {"Hidden Item Not Uploaded", "Something that Finder does not show has not reached iCloud.",
     "Keep this Mac awake and online until it has."},
    {"Sync Paused", "Changes to this item stay on this Mac while its sync is paused.",
     "Close the document in the app that paused it."},
    {"Left Out of iCloud", "iCloud leaves this item on this Mac alone.",
     "Rename or move it if it is to be kept, or acknowledge it."},
    {"State Unknown", "Nobody can say whether this item has reached iCloud.",
     "Open its folder in Finder and look at its cloud symbol."},
    {"Not in iCloud", "This item lies in iCloud Drive but is no part of it.",
     "Move it out and in again, or copy it elsewhere."},
    {"Folder Not Readable", "What this folder holds cannot be seen.", "Let your account read it."},
    {"Files Gone", "This folder holds far fewer files than it did when it was last safe.",
     "Look for them in the trash and in Recently Deleted, or acknowledge the new number."},
}};

}  // namespace

std::string_view rawValue(GapKind kind) {
  return kGapRawValues.at(static_cast<std::size_t>(kind)).text;
}

bool fromRawValue(std::string_view text, GapKind& target) {
  return caseOfRawValue(kGapRawValues, text, target);
}

std::string_view displayTitle(GapKind kind) {
  return kGapWords.at(static_cast<std::size_t>(kind)).title;
}

std::string_view meaningOf(GapKind kind) {
  return kGapWords.at(static_cast<std::size_t>(kind)).meaning;
}

std::string_view remedyFor(GapKind kind) {
  return kGapWords.at(static_cast<std::size_t>(kind)).remedy;
}

bool canClose(GapKind kind) {
  return kind == GapKind::pendingPackage || kind == GapKind::pendingHidden || kind == GapKind::syncPaused;
}

}  // namespace cirrovane
