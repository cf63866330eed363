#pragma once

#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "base/Path.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/StoreFile.h"

#include <optional>
#include <string>
#include <utility>

namespace cirrovane {

/// A JSON file that several of our programs change side by side. Nothing of it is kept: each reading is of the file as
/// it is, and each change is made to what the file holds at that moment, while nobody else changes it. Blocks until the
/// disk has answered; callable on any thread.
template <class Value>
class SharedFile {
 public:
  SharedFile(const FileSystem& fileSystem, const FileStorage& storage, std::string path,
             JSONLayout layout = JSONLayout::pretty)
      : fileSystem_(fileSystem), storage_(storage), path_(std::move(path)), layout_(layout) {}

  /// What the file holds; an empty value when it is missing or unreadable.
  Value read() const {
    StoreFile file(fileSystem_, storage_, path_);
    return readFrom(file);
  }

  /// Lets `apply` change what the file holds, and writes that where `apply` answers that it did. A file that made no
  /// sense is kept aside first. Absent when all went well; else nothing was changed.
  template <class Apply>
  std::optional<Failure> change(const Apply& apply) const {
    const std::string folder(parentPath(path_));
    if (auto failure = storage_.createFolders(folder, FileAccess::privateToUser)) {
      return failure;
    }
    const Result<FolderLock> lock = storage_.lockFolder(folder);
    if (!lock) {
      return Failure{lock.message()};
    }
    StoreFile file(fileSystem_, storage_, path_);
    Value value = readFrom(file);
    if (!apply(value)) {
      return std::nullopt;
    }
    file.save([&value, layout = layout_](const ByteSink& sink) {
      JSONWriter writer(sink, layout);
      writer.write(value);
      return writer.finish() && sink("\n");
    });
    return file.saveFailure();
  }

  const std::string& path() const { return path_; }

 private:
  static Value readFrom(StoreFile& file) {
    const std::optional<std::string> text = file.load();
    if (!text) {
      return Value();
    }
    if (auto value = decodeJSON<Value>(*text)) {
      return std::move(*value);
    }
    file.markUnreadable();
    return Value();
  }

  const FileSystem& fileSystem_;
  const FileStorage& storage_;
  std::string path_;
  JSONLayout layout_;
};

}  // namespace cirrovane
