#pragma once

#include <filesystem>
#include <vector>

namespace cirrovane::demo {

/// Whether a folder was made by this program, which may then make it again.
bool isDemoMac(const std::filesystem::path& folder);

/// Folders that did not exist before; removed again unless they are kept.
class NewFolders {
 public:
  /// Makes the folder with those above it.
  explicit NewFolders(const std::filesystem::path& folder);
  ~NewFolders();
  NewFolders(const NewFolders&) = delete;
  NewFolders& operator=(const NewFolders&) = delete;

  void keep() { made_.clear(); }

 private:
  std::vector<std::filesystem::path> made_;
};

/// The file by which a demo Mac is known; removed again unless it was there before or is kept.
class Marker {
 public:
  explicit Marker(const std::filesystem::path& folder);
  ~Marker();
  Marker(const Marker&) = delete;
  Marker& operator=(const Marker&) = delete;

  void keep() { isNew_ = false; }

 private:
  std::filesystem::path path_;
  bool isNew_;
};

/// A folder of a new name inside another one, removed at the end with all it holds.
class WorkFolder {
 public:
  explicit WorkFolder(const std::filesystem::path& parent);
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// A demo Mac while it is being made: its content is gathered apart and moved in when it is whole. Whatever fails
/// before leaves the folder as it was.
class FolderInMaking {
 public:
  /// Fails unless the folder is new, empty or a demo Mac, on a file system that can hold one.
  explicit FolderInMaking(const std::filesystem::path& folder);

  /// Where the content is to be made.
  const std::filesystem::path& content() const { return work_.path(); }

  /// Replaces what the folder holds by the new content.
  void finish();

 private:
  std::filesystem::path folder_;
  NewFolders newFolders_;
  Marker marker_;
  WorkFolder work_;
};

}  // namespace cirrovane::demo
