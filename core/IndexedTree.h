#pragma once

#include "base/Path.h"
#include "core/NotedItem.h"
#include "core/ReportDraft.h"
#include "core/ScanProgress.h"
#include "core/WatchFolder.h"
#include "platform/FileSystem.h"
#include "platform/FolderWatch.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// What an index keeps of one folder. A clean file is a number in it.
struct IndexedFolder {
  std::string name;
  /// nullptr for the watched folder itself.
  IndexedFolder* parent = nullptr;
  /// Those that a walk enters, by name.
  std::vector<std::unique_ptr<IndexedFolder>> subfolders;
  /// In the order of the listing.
  std::vector<NotedItem> noted;
  std::int64_t cleanFiles = 0;
  /// Where it came in the listing, among the folders of its parent.
  std::uint32_t place = 0;
  /// It could not be opened for want of means, which counts as an error.
  bool isExhausted = false;
  /// Met for the first time, and not read yet.
  bool isNew = false;
};

/// How folders are read, and what comes of it.
struct IndexReading {
  const FileSystem& fileSystem;
  /// May be nullptr.
  ScanProgress* progress = nullptr;
  /// May be nullptr.
  ListingObserver* observer = nullptr;
  /// The watched folders, without a trailing slash.
  std::vector<std::string> watched = {};
  /// Folders that are no longer there and that no watched folder is or lies below; none lies below another.
  std::vector<std::string> gone = {};
  /// Uploads that go on since before then are stalled.
  Time staleBefore = {};
  /// Whether anything differs from what was known.
  bool isChanged = false;
  /// Whether an item blocks that was not known to.
  bool isBlockedAnew = false;
};

/// What an index keeps of one watched folder, by itself: others may hold the same folders once more.
class IndexedTree {
 public:
  explicit IndexedTree(const WatchFolder& folder);
  ~IndexedTree();
  IndexedTree(const IndexedTree&) = delete;
  IndexedTree& operator=(const IndexedTree&) = delete;

  /// Without a trailing slash.
  const std::string& path() const { return path_; }
  std::string pathOf(const IndexedFolder& folder) const;
  /// The folder of that path; nullptr where the tree holds none.
  IndexedFolder* find(std::string_view path);
  bool holds(std::string_view path) const { return const_cast<IndexedTree*>(this)->find(path) != nullptr; }

  /// Reads everything.
  void readWhole(IndexReading& reading);
  /// Reads again what the changes name.
  void update(std::span<const FolderChange> changes, IndexReading& reading);
  /// Takes in items of a folder that were asked for by name, as far as that can be done without its listing; nullptr
  /// where none was found. False where the listing may tell more.
  bool takeItems(IndexedFolder& folder, const std::vector<std::string>& asked, const ItemBatch* batch,
                 IndexReading& reading);

  /// Adds the watched folder to a report.
  void addTo(ReportDraft& report) const;
  /// The folders in which something is noted; their order means nothing.
  const std::set<IndexedFolder*>& notedFolders() const { return notedFolders_; }

  /// Tells as gone what the former index of the same watched folder held and this one does not.
  void tellGoneSince(const IndexedTree& former, IndexReading& reading) const {
    former.tellGone(former.root_.subfolders, root_, reading);
  }

  /// Folders in which the two differ.
  std::vector<std::string> differences(const IndexedTree& other) const;

 private:
  using Subfolders = std::vector<std::unique_ptr<IndexedFolder>>;
  struct ToRead;
  class DeepReadings;
  class KnownSubfolders;

  std::map<std::string, ToRead> plan(std::span<const FolderChange> changes, const FileSystem& fileSystem,
                                     bool& isWhole) const;
  bool isMostOfAll(const std::map<std::string, ToRead>& toRead);
  /// Both answer whether the folder was listed to its end.
  bool readDeep(IndexedFolder& folder, IndexReading& reading);
  bool readOwn(IndexedFolder& folder, IndexReading& reading);
  void readDeepOrAbove(IndexedFolder& folder, IndexReading& reading, DeepReadings& done);

  static std::int64_t takeBatch(IndexedFolder& folder, const ItemBatch& batch, KnownSubfolders* known);
  static void addSubfolder(IndexedFolder& folder, std::string_view name, KnownSubfolders* known);
  /// Takes the folder's own share out of the sums, and in again.
  void open(IndexedFolder& folder);
  void close(IndexedFolder& folder);
  static void empty(IndexedFolder& folder);
  void drop(Subfolders subfolders);
  void tellGone(const Subfolders& former, const IndexedFolder& now, IndexReading& reading) const;
  std::vector<const IndexedFolder*> notedInWalkOrder() const;

  WatchFolder watched_;
  std::string path_;
  bool exists_ = false;
  WalkOutcome outcome_;
  IndexedFolder root_;
  std::int64_t cleanFiles_ = 0;
  std::set<IndexedFolder*> notedFolders_;
};

/// The path of an item of the folder.
std::string itemPath(const std::string& folder, std::string_view name);

}  // namespace cirrovane
