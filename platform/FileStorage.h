#pragma once

#include "base/ByteSink.h"
#include "base/Result.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// Who may read what is written.
enum class FileAccess {
  /// The user alone.
  privateToUser,
  /// Whoever the user's usual settings let.
  asUsual,
};

/// Holds a folder's lock as long as it lives.
using FolderLock = std::shared_ptr<const void>;

/// Files that this program keeps itself. Callable on any thread; every call blocks until the disk has answered.
class FileStorage {
 public:
  virtual ~FileStorage() = default;

  /// Makes the folder and all those above it; fine when it is there. With private access the folder itself is made, or
  /// made to be, the user's alone. A failure when there is no such folder afterwards.
  virtual std::optional<Failure> createFolders(const std::string& path, FileAccess access) const = 0;

  /// The whole content of an ordinary file of at most `limit` bytes.
  virtual Result<std::string> read(const std::string& path, std::size_t limit) const = 0;

  /// Puts what `produce` writes in place of the file, all of it or, on failure, nothing: after a crash at any moment
  /// the file is the old or the new one, whole, and after success the new one survives a loss of power.
  virtual std::optional<Failure> writeAtomically(const std::string& path, FileAccess access,
                                                 const ByteProducer& produce) const = 0;

  /// Gives a file another name in place of whatever had that name.
  virtual std::optional<Failure> rename(const std::string& from, const std::string& to) const = 0;

  /// Keeps everybody else who asks for the same out of the folder's files until the answer is let go, or the program
  /// ends in any way. Waits for a short while; a failure when another one holds it for longer, and where there is no
  /// such folder.
  virtual Result<FolderLock> lockFolder(const std::string& path) const = 0;
};

}  // namespace cirrovane
