#pragma once

#include "demo/CloudState.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::demo {

/// How far a file is on its way between a Mac and iCloud.
enum class SampleState {
  /// No iCloud item.
  localOnly,
  settled,
  conflicting,
  uploadFailed,
  downloadFailed,
  /// On its way up; the file's age tells whether it is stuck.
  uploading,
  /// In the queue for its upload.
  waiting,
  cloudOnly,
  /// Local, but not the newest version.
  outdated,
  /// Uploaded, but changes stay here while its sync is paused.
  paused,
  /// In iCloud, which does not say whether it is uploaded.
  unknown,
};

/// A file of the demo Mac.
struct SampleFile {
  /// Below the home folder.
  std::string path;
  std::size_t size = 0;
  SampleState state = SampleState::settled;
  /// How long ago it was modified.
  std::chrono::minutes age{};
  /// What went wrong, as macOS words it.
  std::string_view error;
};

/// Where iCloud Drive lies below the home folder.
inline constexpr std::string_view kDriveFolder = "Library/Mobile Documents/com~apple~CloudDocs";

std::vector<SampleFile> sampleFiles();

/// A folder of the demo Mac whose own state counts: a Mac shows it as one document, or keeps everybody out of it.
struct SampleFolder {
  /// Below the home folder.
  std::string path;
  CloudState state;
};

std::vector<SampleFolder> sampleFolders();

CloudState cloudStateOf(const SampleFile& file);

}  // namespace cirrovane::demo
