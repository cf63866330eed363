#pragma once

#include "platform/FileSystem.h"
#include "platform/macos/plain/MaterializationPolicy.h"
#include "platform/macos/plain/ResourceDictionary.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// Is handed the system's answer about an item.
using ResourceTaker = std::function<void(const ResourceDictionary& dictionary)>;

/// The calls by which a walk asks a Mac about its files. A class, so that a test can stand in for a Mac. Callable on
/// any thread.
class MacWalkCalls {
 public:
  virtual ~MacWalkCalls() = default;

  /// As openat.
  virtual int openFolder(int directory, const char* name, int flags) const = 0;
  /// Writes the folder's next entries, packed, from the descriptor's position on: how many, 0 at the end, and -1 with
  /// errno set when they cannot be had.
  virtual int listEntries(int descriptor, std::span<char> target) const = 0;
  /// Writes the folder's entry of that name in the same form, a link as what it is: 0, or -1 with errno set.
  virtual int readEntry(int descriptor, const char* name, std::span<char> target) const = 0;
  /// The path without any link in it; the path itself where that cannot be found out.
  virtual std::string withoutLinks(const std::string& path) const = 0;
  /// Whether the system shows folders with this ending to their names as one document each.
  virtual bool isPackageExtension(std::string_view extension) const = 0;
  /// Hands on what the cloud says of the item to such a walk. False, with nothing handed on, when that cannot be read.
  virtual bool readCloudState(const std::string& path, bool isFolder, WalkScope scope,
                              const ResourceTaker& take) const = 0;
};

/// Threads that a walk on a machine with so many processors reads ahead on. A thread mostly waits for the cloud's
/// answer.
std::size_t macWalkThreadCount(unsigned processorCount);

/// A walk over a folder of a Mac; nullptr for a path that leads nowhere. `materialization` outlives the walk: each of
/// the walk's threads forbids itself by it to fetch anything.
std::unique_ptr<FolderWalk> startMacWalk(const WalkRequest& request, const std::shared_ptr<const MacWalkCalls>& calls,
                                         const MaterializationCalls& materialization, std::size_t threadCount);

/// The named entries of a folder of a Mac, as FileSystem has it.
std::unique_ptr<ItemBatch> readMacItems(const std::string& folder, const std::vector<std::string>& names,
                                        const std::shared_ptr<const MacWalkCalls>& calls,
                                        const MaterializationCalls& materialization);

}  // namespace cirrovane
