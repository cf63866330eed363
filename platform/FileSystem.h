#pragma once

#include "base/Time.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// Where the newest known version of a cloud item is: on this machine, stale on this machine, or in the cloud only.
enum class DownloadingStatus { current, downloaded, notDownloaded };

/// What the file system knows of one item. An absent optional is a value that it does not offer for the item; the
/// texts live as long as the batch that holds them.
struct ResourceValues {
  bool isDirectory = false;
  bool isUbiquitousItem = false;
  std::optional<bool> isUploaded;
  std::optional<bool> isUploading;
  std::optional<bool> hasUnresolvedConflicts;
  std::optional<DownloadingStatus> downloadingStatus;
  std::optional<std::string_view> uploadingError;
  std::optional<std::string_view> downloadingError;
  /// May also be absent where no reader of the values could need it: the item is a folder, or is clean.
  std::optional<Time> contentModificationDate;
  /// Bytes; may be absent wherever the date may.
  std::optional<std::int64_t> fileSize = std::nullopt;
  // Told by walks over everything alone.
  std::optional<bool> isExcludedFromSync = std::nullopt;
  std::optional<bool> isSyncPaused = std::nullopt;
  /// Whether the system shows a folder as one document; absent where the walk goes by the folder's name alone.
  std::optional<bool> isPackage = std::nullopt;
};

/// What an item is on the disk.
enum class ItemKind : std::uint8_t { file, folder, other };

/// Why a scan does not look at an item, or at what it holds.
enum class Concealment : std::uint8_t { none, hidden, package };

/// One item below an enumerated folder.
struct Item {
  /// Last component of the item's path, as the file system stores it: any bytes but "/" and NUL.
  std::string_view name;
  /// Absent when the item's values could not be read.
  std::optional<ResourceValues> values;
  /// Whether it is a folder that the walk enters.
  bool isEntered = false;
  ItemKind kind = ItemKind::file;
  /// Why a scan passes it over; what a folder above it hides does not count.
  Concealment concealment = Concealment::none;
  /// Whether this tells of a folder below the first that it could not be listed to its end.
  bool isUnlisted = false;
};

/// Items that the walk met one after another, with their values already read.
class ItemBatch {
 public:
  virtual ~ItemBatch() = default;
  virtual std::span<const Item> items() const = 0;
  /// Absolute path of the folder whose listing the items are, without a trailing slash. A walk tells a folder's items
  /// in batches that follow one another. A folder that could not be opened for want of means is an item of its own
  /// listing; in a walk over everything so is one that could not be listed, after what was listed of it.
  virtual std::string folderPath() const = 0;
  /// Absolute path of an item of this batch. Made on demand, because hardly any item ever needs it.
  virtual std::string path(const Item& item) const = 0;
};

/// A walk over everything below a folder, in the walk's own order. Used by one thread at a time.
class FolderWalk {
 public:
  virtual ~FolderWalk() = default;
  /// The next items, or nullptr after the last. The batch stays valid until the next call.
  virtual const ItemBatch* next() = 0;
  /// After the end: whether the folder that the walk began at was listed to its own end. A folder below it that could
  /// not be listed does not count.
  virtual bool isComplete() const = 0;
};

/// Told of each folder of a walk before its entries are read, on the walk's threads, several of which may call at once.
class ListingObserver {
 public:
  virtual ~ListingObserver() = default;
  /// The folder's path as the walk names it, and a descriptor on which it is open; -1 where the walk has none.
  virtual void beforeListing(const std::string& folder, int descriptor) = 0;
};

/// What a walk tells of.
enum class WalkScope : std::uint8_t {
  /// What a scan counts: no hidden items, and nothing that a package holds.
  shown,
  /// Those too, which folders below could not be listed, and the values that are told by such walks alone. The date is
  /// absent.
  everything,
};

/// What a walk covers, and who is told of it.
struct WalkRequest {
  /// Without a trailing slash.
  std::string folder;
  /// Whether it goes on into the folders below, or tells the folder's own entries alone.
  bool isDeep = true;
  /// May be nullptr; outlives the walk.
  ListingObserver* observer = nullptr;
  WalkScope scope = WalkScope::shown;
  /// Whether its threads give way to everybody else's on this machine.
  bool isUnhurried = false;
};

/// Sizes of the volume that holds a folder, in bytes; absent when the system does not give them.
struct VolumeCapacities {
  /// What the user can still store, as much as the system would clear for that included.
  std::optional<std::int64_t> availableForImportantUsage;
  std::optional<std::int64_t> total;
};

/// The files of this machine. Callable on any thread.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// Whether anything exists at the path; a link that leads nowhere does not.
  virtual bool exists(const std::string& path) const = 0;

  /// A walk over the items below the folder, recursive; what it tells of is the request's. What is gone by the time it
  /// comes by is passed over. nullptr when no walk can be made, which counts as a folder that cannot be listed.
  virtual std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const = 0;
  /// The same over all below the folder, with nobody told.
  std::unique_ptr<FolderWalk> enumerate(const std::string& folder) const { return enumerate(WalkRequest{folder}); }

  /// Those of the named entries of a folder that exist and that a walk would show, in the order given, with their
  /// values; nullptr when none does.
  virtual std::unique_ptr<ItemBatch> readItems(const std::string& folder,
                                               const std::vector<std::string>& names) const = 0;

  virtual VolumeCapacities volumeCapacities(const std::string& folder) const = 0;

  /// The user's home folder, without a trailing slash.
  virtual std::string homeDirectory() const = 0;

  /// The folder where programs keep the user's data, without a trailing slash; absent when the system names none.
  virtual std::optional<std::string> applicationSupportDirectory() const = 0;
};

}  // namespace cirrovane
