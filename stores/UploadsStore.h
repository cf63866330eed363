#pragma once

#include "core/SyncHealthReport.h"
#include "core/UploadProgress.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/SharedFile.h"

#include <optional>
#include <string>

namespace cirrovane {

/// What is remembered of uploads, and its file "uploads.json", which window and terminal write side by side. Keeps
/// nothing itself. Every call blocks until the disk has answered; callable on any thread.
class UploadsStore {
 public:
  /// Very many entries, which nobody reads.
  static constexpr JSONLayout kLayout = JSONLayout::line;

  /// At the path, or at the default place. Both outlive the store.
  UploadsStore(const FileSystem& fileSystem, const FileStorage& storage,
               std::optional<std::string> filePath = std::nullopt);

  struct Look {
    /// The record after the look, whether or not it could be written.
    UploadRecord record;
    /// Why it could not; absent when it was.
    std::optional<Failure> failure;
  };
  /// Takes in what a scan found pending, as of when it was made.
  Look note(const SyncHealthReport& report) const;
  /// The same, and nothing is written.
  UploadRecord recordAfter(const SyncHealthReport& report) const;

 private:
  UploadRecord afterReport(UploadRecord record, const SyncHealthReport& report) const;

  const FileSystem& fileSystem_;
  SharedFile<UploadRecord> file_;
};

}  // namespace cirrovane
