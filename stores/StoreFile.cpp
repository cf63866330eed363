#include "stores/StoreFile.h"

#include "base/BoundedRead.h"
#include "base/Path.h"
#include "core/FolderNaming.h"

namespace cirrovane {
namespace {

constexpr std::string_view kFolderName = "com.quillmere.Cirrovane";
constexpr std::string_view kUnreadableSuffix = ".unreadable";

}  // namespace

std::string defaultStoragePath(const FileSystem& fileSystem, std::string_view fileName) {
  const std::string support = fileSystem.applicationSupportDirectory().value_or(
      std::string(withoutTrailingSlash(fileSystem.homeDirectory())) + "/Library/Application Support");
  std::string path(withoutTrailingSlash(support));
  path.append("/").append(kFolderName).append("/").append(fileName);
  return path;
}

std::optional<std::string> StoreFile::load() {
  if (!fileSystem_.exists(path_)) {
    return std::nullopt;
  }
  Result<std::string> text = storage_.read(path_, kBearableFileSize);
  if (!text) {
    markUnreadable();
    return std::nullopt;
  }
  return std::move(*text);
}

void StoreFile::save(const ByteProducer& produce) {
  saveFailure_ = trySave(produce);
}

std::optional<Failure> StoreFile::trySave(const ByteProducer& produce) {
  if (auto failure = storage_.createFolders(std::string(parentPath(path_)), FileAccess::privateToUser)) {
    return failure;
  }
  if (isUnreadable_) {
    if (auto failure = storage_.rename(path_, path_ + std::string(kUnreadableSuffix))) {
      return failure;
    }
    isUnreadable_ = false;
  }
  return storage_.writeAtomically(path_, FileAccess::privateToUser, produce);
}

}  // namespace cirrovane
