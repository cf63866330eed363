#pragma once

#include "platform/FileSystem.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Something that changed in a folder of a watched tree.
struct FolderChange {
  /// As a walk over the watched folder names it: the watched folder's own path, without a trailing slash, and below it
  /// the names as the file system stores them.
  std::string folder;
  /// Name of the entry in the folder that changed, appeared or went; empty where the system does not name it.
  std::string item;
  /// Whether everything below the folder may have changed with it. Without an item.
  bool isDeep = false;

  friend bool operator==(const FolderChange&, const FolderChange&) = default;
};

/// Hears what a watch has to tell, on any thread, one call at a time. May not call the watch back.
class FolderWatchListener {
 public:
  virtual ~FolderWatchListener() = default;
  /// Entries changed since the folders were last read. The same may be told again, in any order.
  virtual void changed(std::vector<FolderChange> changes) = 0;
  /// Anything below any watched folder may have changed; the reason in words for people.
  virtual void lost(std::string reason) = 0;
  /// From now on changes are told (absent), or not all of them, with the reason in words for people. A walk that began
  /// after the watch stood misses nothing. After a reason, what can be told still is; only `start` begins anew.
  virtual void stands(std::optional<std::string> reasonAgainst) = 0;
  /// The system has answered `prove`: every change until that call has been told.
  virtual void proved() = 0;
};

/// Tells of changes below watched folders. What a walk does not show, hidden items and the contents of packages, is not
/// watched. Its members are called by one thread at a time; a walk's calls of the observer come on the walk's threads.
class FolderWatch {
 public:
  /// Ends the watch. No call of the listener comes or goes on after it.
  virtual ~FolderWatch() = default;

  /// Watches these folders, by their paths without a trailing slash, in place of those before. Answers by `stands`, at
  /// once or later. Folders below them are watched as walks tell of them.
  virtual void start(const std::vector<std::string>& folders) = 0;

  /// To be handed to every walk over a watched folder, or a folder below: it has each folder watched before that is
  /// listed. Lives as long as the watch.
  virtual ListingObserver& listings() = 0;

  /// The folder and everything below it is no longer part of a watched tree by that path.
  virtual void forget(const std::string& folder) = 0;

  /// Asks the system to prove that the watch is alive. Answers by `proved`, maybe before this returns, or by `stands`
  /// with a reason.
  virtual void prove() = 0;

  /// How long after a change of a folder its items have to be read again, because their cloud state follows their
  /// content without being told; in ascending order.
  virtual std::vector<std::chrono::seconds> laterReadings() const = 0;
};

}  // namespace cirrovane
