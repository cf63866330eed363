#pragma once

#include "platform/posix/walk/WalkBatch.h"

#include <cstddef>
#include <memory>
#include <string>

namespace cirrovane {

/// How far the listing of a folder has come.
enum class Listing {
  hasMore,
  ended,
  /// The folder may hold more than was told.
  failed,
  /// The folder is no longer there.
  gone,
  /// The folder's list of names is not on this machine.
  isElsewhere,
  /// What the system told has no meaning, so that nobody knows what the folder holds.
  meaningless,
};

/// Reads the entries of folders for a walk, as one system has them. Used by one thread, on which it is made and ends.
class WalkReader {
 public:
  virtual ~WalkReader() = default;

  /// What it means for a folder's listing that the folder could not be opened, with this error.
  virtual Listing afterOpeningFailed(int error) const = 0;
  /// Whether the open folder may be listed.
  virtual bool allowsListing(int descriptor) = 0;
  /// Adds the folder's next entries to the batch, from the descriptor's position on, without hidden ones.
  virtual Listing readNames(int descriptor, WalkBatch& batch) = 0;
  /// Adds the folder's entry of that name to the batch, if there is one and it is not hidden.
  virtual void readName(int descriptor, const std::string& name, WalkBatch& batch) = 0;
  /// Reads the values of the items that this reader has just added.
  virtual void readValues(int descriptor, WalkBatch& batch) = 0;
};

/// Whose a thread is that reads.
enum class ReadingThread { walks, callers };

/// What one system brings to a walk. Callable on any thread.
class WalkSource {
 public:
  virtual ~WalkSource() = default;
  /// Bytes of entries that are read at a time.
  virtual std::size_t entriesSize() const = 0;
  /// A reader for the calling thread; nullptr when that may look at no folder.
  virtual std::unique_ptr<WalkReader> makeReader(ReadingThread thread) const = 0;
};

}  // namespace cirrovane
