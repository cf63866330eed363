#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"
#include "base/UUID.h"
#include "core/BlockerReason.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace cirrovane {

/// One problem of a file, or of a whole watched folder.
struct SyncBlocker {
  /// New for each blocker of each scan.
  UUID id;
  /// Absolute path of the file, or of the folder where the reason concerns a folder.
  std::string filePath;
  /// The name of the watched folder in which it was found.
  std::string folderName;
  BlockerReason reason = BlockerReason::unavailableFolder;
  /// What is wrong, as a sentence for a person.
  std::string details;
  /// The file's modification date; absent for folders and conflicts, and where the file system has none.
  std::optional<Time> lastModified;
  /// The file's size when it was scanned; absent where the date may be, and in a record that was read from a file.
  std::optional<std::int64_t> fileSize = std::nullopt;

  /// The size is no part of the record.
  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &SyncBlocker::id},
                      JSONField{"filePath", &SyncBlocker::filePath},
                      JSONField{"folderName", &SyncBlocker::folderName},
                      JSONField{"reason", &SyncBlocker::reason},
                      JSONField{"details", &SyncBlocker::details},
                      JSONField{"lastModified", &SyncBlocker::lastModified}};
  }
  friend bool operator==(const SyncBlocker&, const SyncBlocker&) = default;
};

}  // namespace cirrovane
