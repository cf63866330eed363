#pragma once

#include "platform/FileStorage.h"
#include "platform/posix/FileCalls.h"

#include <optional>
#include <string>

namespace cirrovane {

/// The program's own files by POSIX calls, on either system.
class PosixFileStorage final : public FileStorage {
 public:
  PosixFileStorage() = default;
  explicit PosixFileStorage(const FileCalls& calls) : calls_(&calls) {}

  PosixFileStorage(const PosixFileStorage&) = delete;
  PosixFileStorage& operator=(const PosixFileStorage&) = delete;

  std::optional<Failure> createFolders(const std::string& path, FileAccess access) const override;
  Result<std::string> read(const std::string& path, std::size_t limit) const override;
  std::optional<Failure> writeAtomically(const std::string& path, FileAccess access,
                                         const ByteProducer& produce) const override;
  std::optional<Failure> rename(const std::string& from, const std::string& to) const override;
  /// By a lock on the folder itself, of which nothing is left behind.
  Result<FolderLock> lockFolder(const std::string& path) const override;

 private:
  FileCalls realCalls_;
  const FileCalls* calls_ = &realCalls_;
};

}  // namespace cirrovane
