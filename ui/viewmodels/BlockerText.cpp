#include "ui/viewmodels/BlockerText.h"

#include "base/Path.h"
#include "ui/viewmodels/Text.h"

#include <string_view>

namespace cirrovane {

BlockerRow blockerRow(const SyncBlocker& blocker) {
  return {.reason = toQString(displayTitle(blocker.reason)),
          .folderName = toDisplay(blocker.folderName),
          .path = toDisplay(blocker.filePath),
          .details = toDisplay(blocker.details),
          .filePath = blocker.filePath};
}

QString blockerLine(BlockerReason reason, std::string_view path) {
  const std::string_view name = lastPathComponent(path);
  return toQString(displayTitle(reason)) + QStringLiteral(": ") + toDisplay(name.empty() ? path : name);
}

}  // namespace cirrovane
