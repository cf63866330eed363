#include "core/BlockerReason.h"

#include "base/JSONRecord.h"

#include <cstddef>

namespace cirrovane {
namespace {

// In declaration order, so that a reason is its own index.
constexpr std::array<RawValue<BlockerReason>, kAllBlockerReasons.size()> kRawValues = {{
    {BlockerReason::unavailableFolder, "unavailableFolder"},
    {BlockerReason::outsideICloud, "outsideICloud"},
    {BlockerReason::unresolvedConflict, "unresolvedConflict"},
    {BlockerReason::uploadError, "uploadError"},
    {BlockerReason::downloadError, "downloadError"},
    {BlockerReason::stalledUpload, "stalledUpload"},
    {BlockerReason::notUploaded, "notUploaded"},
    {BlockerReason::notDownloaded, "notDownloaded"},
}};

constexpr std::array<std::string_view, kAllBlockerReasons.size()> kDisplayTitles = {
    "Folder Unavailable", "Outside iCloud", "Conflict Detected", "Upload Error",
    "Download Error",     "Upload Stalled", "Not Uploaded",      "Cloud-Only (Not Local)",
};

}  // namespace

std::string_view rawValue(BlockerReason reason) {
  return kRawValues.at(static_cast<std::size_t>(reason)).text;
}

bool fromRawValue(std::string_view text, BlockerReason& target) {
  return caseOfRawValue(kRawValues, text, target);
}

std::string_view displayTitle(BlockerReason reason) {
  return kDisplayTitles.at(static_cast<std::size_t>(reason));
}

}  // namespace cirrovane
