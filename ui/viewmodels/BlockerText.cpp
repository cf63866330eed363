#include "ui/viewmodels/BlockerText.h"

#include "base/Path.h"
#include "ui/viewmodels/Text.h"

#include <string_view>

namespace cirrovane {

QByteArrayList blockerRoles() {
  return {"reason", "folderName", "path", "details"};
}

std::vector<RowListModel::Row> blockerRows(std::span<const SyncBlocker> blockers) {
  std::vector<RowListModel::Row> rows;
  for (const SyncBlocker& blocker : blockers) {
    const QString path = toDisplay(blocker.filePath);
    rows.push_back(
        {toQString(rawValue(blocker.reason)) + path,
         {toQString(displayTitle(blocker.reason)), toDisplay(blocker.folderName), path, toDisplay(blocker.details)}});
  }
  return rows;
}

QString blockerLine(const SyncBlocker& blocker) {
  const std::string_view path = blocker.filePath;
  const std::string_view name = lastPathComponent(path);
  return toQString(displayTitle(blocker.reason)) + QStringLiteral(": ") + toDisplay(name.empty() ? path : name);
}

}  // namespace cirrovane
