#pragma once

#include "cli/Output.h"
#include "coordinator/UploadShare.h"
#include "core/SyncHealthReport.h"
#include "platform/Clock.h"
#include "stores/UploadsStore.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// How often it is shown anew, since a pause in uploads is a change too.
inline constexpr std::chrono::seconds kUploadsShown{1};

/// How uploads go, in the last line of a terminal: a bar, files, bytes, rate and the time that is left. Shows nothing
/// where the terminal cannot take a line back. Records nothing.
class UploadLine {
 public:
  UploadLine(std::shared_ptr<const UploadsStore> store, const FileSystem& fileSystem, const Clock& clock, Output& out);

  /// Takes in what a report says is pending, and shows it. The same report may be shown again as time goes by.
  void show(const SyncHealthReport& report);
  /// Takes the line back, before anybody else writes.
  void erase();

 private:
  std::string text(const PendingUploads& uploads) const;

  std::shared_ptr<const UploadsStore> store_;
  const FileSystem& fileSystem_;
  const Clock& clock_;
  Output& out_;
  /// Absent before the first report.
  std::optional<UploadRecord> record_;
  UploadShare share_;
  std::string shown_;
};

}  // namespace cirrovane
