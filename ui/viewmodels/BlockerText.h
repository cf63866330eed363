#pragma once

#include "core/SyncBlocker.h"
#include "ui/viewmodels/RowListModel.h"

#include <QByteArrayList>
#include <QString>
#include <span>
#include <vector>

namespace cirrovane {

/// The roles of a list of blockers: "reason", "folderName", "path" and "details".
QByteArrayList blockerRoles();
/// A row for each blocker, in their order.
std::vector<RowListModel::Row> blockerRows(std::span<const SyncBlocker> blockers);

/// Reason and file on one line: "Upload Stalled: invoice.pdf". A path without a last component stands whole.
QString blockerLine(const SyncBlocker& blocker);

}  // namespace cirrovane
