#pragma once

#include "core/SyncBlocker.h"

#include <QMetaType>
#include <QString>
#include <string>
#include <string_view>

namespace cirrovane {

/// A blocker in words.
struct BlockerRow {
  Q_GADGET
  Q_PROPERTY(QString reason MEMBER reason)
  Q_PROPERTY(QString folderName MEMBER folderName)
  Q_PROPERTY(QString path MEMBER path)
  Q_PROPERTY(QString details MEMBER details)

 public:
  QString reason;
  QString folderName;
  QString path;
  QString details;
  /// The path as it is on the disk.
  std::string filePath;

  friend bool operator==(const BlockerRow&, const BlockerRow&) = default;
  friend QString keyOf(const BlockerRow& row) { return row.reason + row.path; }
};

BlockerRow blockerRow(const SyncBlocker& blocker);

/// Reason and file on one line: "Upload Stalled: invoice.pdf". A path without a last component is shown whole.
QString blockerLine(BlockerReason reason, std::string_view path);

}  // namespace cirrovane
