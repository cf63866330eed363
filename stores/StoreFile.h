#pragma once

#include "base/ByteSink.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// Where the system keeps a store's file of this name, for this user.
std::string defaultStoragePath(const FileSystem& fileSystem, std::string_view fileName);

/// The one file of a store: read once, written whole after each change.
class StoreFile {
 public:
  StoreFile(const FileSystem& fileSystem, const FileStorage& storage, std::string path)
      : fileSystem_(fileSystem), storage_(storage), path_(std::move(path)) {}

  /// The file's text; absent when there is no file, and when it cannot be read.
  std::optional<std::string> load();

  /// Says that the text made no sense. The file is then kept aside, under its name and ".unreadable", before the next
  /// save would overwrite what may be the user's only evidence.
  void markUnreadable() { isUnreadable_ = true; }

  /// Writes the whole file, private to the user, after making its folder. What went wrong, if anything, is also kept
  /// for saveFailure().
  void save(const ByteProducer& produce);

  /// Why the latest save came to nothing; absent when it did not.
  const std::optional<Failure>& saveFailure() const { return saveFailure_; }

  const std::string& path() const { return path_; }

 private:
  std::optional<Failure> trySave(const ByteProducer& produce);

  const FileSystem& fileSystem_;
  const FileStorage& storage_;
  std::string path_;
  bool isUnreadable_ = false;
  std::optional<Failure> saveFailure_;
};

}  // namespace cirrovane
