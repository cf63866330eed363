#pragma once

#include "platform/FileStorage.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::test {

/// Files in memory, of which every write can be made to fail.
class FakeFileStorage final : public FileStorage {
 public:
  /// Every write of a file for others, such as an export, fails with it, while there is one.
  std::optional<Failure> failure;
  /// The same for the files that are the user's alone, such as a store's.
  std::optional<Failure> privateFailure;

  /// So does every lock.
  std::optional<Failure> lockFailure;

  std::optional<Failure> createFolders(const std::string&, FileAccess) const override { return std::nullopt; }

  Result<std::string> read(const std::string& path, std::size_t) const override {
    const auto found = files_.find(path);
    return found == files_.end() ? Result<std::string>(Failure{"no such file"}) : Result<std::string>(found->second);
  }

  std::optional<Failure> writeAtomically(const std::string& path, FileAccess access,
                                         const ByteProducer& produce) const override {
    if (const auto& refusal = access == FileAccess::asUsual ? failure : privateFailure) {
      return refusal;
    }
    std::string content;
    const bool isWhole = produce([&](std::string_view piece) {
      content += piece;
      return true;
    });
    if (!isWhole) {
      return Failure{"cut short"};
    }
    files_[path] = std::move(content);
    written_.push_back(path);
    return std::nullopt;
  }

  std::optional<Failure> rename(const std::string& from, const std::string& to) const override {
    files_[to] = files_[from];
    files_.erase(from);
    return std::nullopt;
  }

  Result<FolderLock> lockFolder(const std::string&) const override {
    return lockFailure ? Result<FolderLock>(*lockFailure) : Result<FolderLock>(std::make_shared<int>());
  }

  void put(const std::string& path, std::string content) { files_[path] = std::move(content); }
  const std::map<std::string, std::string>& files() const { return files_; }
  /// The paths that were written, in order.
  const std::vector<std::string>& written() const { return written_; }

 private:
  mutable std::map<std::string, std::string> files_;
  mutable std::vector<std::string> written_;
};

}  // namespace cirrovane::test
