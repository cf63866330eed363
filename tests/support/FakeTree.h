#pragma once

#include "platform/FileSystem.h"
#include "platform/FolderWatch.h"
#include "tests/support/FakeFileSystem.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// Hears of what was done to a tree, in order, after it was done: to do the same elsewhere.
class TreeMirror {
 public:
  virtual ~TreeMirror() = default;
  virtual void madeFolder(const std::string& path) = 0;
  /// A new file, or one in place of a former.
  virtual void madeFile(const std::string& path, const std::optional<FakeValues>& values) = 0;
  virtual void setValues(const std::string& path, const std::optional<FakeValues>& values) = 0;
  virtual void madeLink(const std::string& path, const std::string& target) = 0;
  virtual void removed(const std::string& path) = 0;
  virtual void moved(const std::string& from, const std::string& to) = 0;
  virtual void setListable(const std::string& path, bool isListable) = 0;
};

/// A file system in memory that is a real tree: folders, files, links, packages, hidden names, and folders that cannot
/// be listed. Paths are absolute. A folder lists its entries in an order of its own.
class FakeTree final : public FileSystem {
 public:
  FakeTree();
  ~FakeTree() override;
  FakeTree(const FakeTree&) = delete;
  FakeTree& operator=(const FakeTree&) = delete;

  // What is done to the tree. False, and nothing done, where a real file system would refuse.

  bool makeFolder(const std::string& path);
  /// Without values its metadata cannot be read.
  bool makeFile(const std::string& path, const std::optional<FakeValues>& values);
  bool setValues(const std::string& path, const std::optional<FakeValues>& values);
  /// To an absolute path.
  bool makeLink(const std::string& path, const std::string& target);
  /// With all below.
  bool remove(const std::string& path);
  /// Takes the place of a file, a link or an empty folder, as rename does.
  bool move(const std::string& from, const std::string& to);
  bool setListable(const std::string& path, bool isListable);
  /// What a walk over everything is told of a folder; at first that it is in iCloud. Without values they cannot be
  /// read.
  bool setFolderValues(const std::string& path, const std::optional<FakeValues>& values);
  /// Whether the folder cannot be opened because the process lacks the means.
  bool setExhausted(const std::string& path, bool isExhausted);
  /// Whether the folder's listing fails in the middle.
  bool setBreaksOff(const std::string& path, bool breaksOff);

  /// Everything there is, links not followed.
  std::vector<std::string> allPaths() const;
  bool isFolder(const std::string& path) const;
  bool isFile(const std::string& path) const;
  /// What a listing of the folder tells of, however it ends.
  std::vector<std::string> listedNames(const std::string& path) const;
  /// Whether a listing of the folder comes to its end.
  bool isListable(const std::string& path) const;
  /// The values of a file, or of a folder; absent where they cannot be read, or it is neither.
  std::optional<FakeValues> valuesOf(const std::string& path) const;
  /// The folders that a walk over the folder enters, itself included, and those that it would enter could they be
  /// listed.
  std::vector<std::string> enteredFolders(const std::string& path) const;
  /// Differs for two items of the same path that are not the same; nullptr where there is none.
  const void* identityOf(const std::string& path) const { return find(path); }
  /// Where a path leads, without links; absent where it leads nowhere.
  std::optional<std::string> resolved(const std::string& path) const;

  void setMirror(TreeMirror* mirror) { mirror_ = mirror; }
  /// Called before and after each thing that is done, with the folder and its entry that are touched.
  using Listener = std::function<void(const std::string& folder, const std::string& entry, bool isAfter)>;
  void setListener(Listener listener) { listener_ = std::move(listener); }
  /// How many items a walk hands out at a time.
  void setBatchSize(std::size_t size) { batchSize_ = size; }
  /// How many folders were listed, by walks of any kind.
  std::size_t listingCount() const { return listingCount_; }
  /// Called at each listing of a folder, such as to let time go by.
  void setOnListing(std::function<void()> onListing) { onListing_ = std::move(onListing); }

  bool exists(const std::string& path) const override { return resolved(path).has_value(); }
  using FileSystem::enumerate;
  std::unique_ptr<FolderWalk> enumerate(const WalkRequest& request) const override;
  std::unique_ptr<ItemBatch> readItems(const std::string& folder, const std::vector<std::string>& names) const override;
  VolumeCapacities volumeCapacities(const std::string&) const override { return {}; }
  std::string homeDirectory() const override { return "/Users/test"; }
  std::optional<std::string> applicationSupportDirectory() const override { return std::nullopt; }

 private:
  struct Entry;
  struct Listed;

  Entry* find(const std::string& path) const;
  Entry* parentOf(const std::string& path) const;
  const Entry* follow(const std::string& path) const;
  template <class Action>
  void act(const std::vector<std::string>& touched, const Action& action);
  void list(const Entry& folder, const WalkRequest& request, const std::string& path, Listed& listed) const;

  std::unique_ptr<Entry> root_;
  TreeMirror* mirror_ = nullptr;
  Listener listener_;
  std::size_t batchSize_ = 3;
  mutable std::size_t listingCount_ = 0;
  std::function<void()> onListing_;
};

/// Whoever tells a test what changed in watched folders.
class ChangeSource {
 public:
  virtual ~ChangeSource() = default;
  /// Watches these from now on, in place of those before.
  virtual void start(const std::vector<std::string>& folders) = 0;
  virtual ListingObserver& listings() = 0;
  virtual void forget(const std::string& folder) = 0;
  /// Every change until now that was not taken before; absent when some were lost.
  virtual std::optional<std::vector<FolderChange>> take() = 0;
};

/// The watch of a FakeTree: tells of the folders that walks told it of, as a system would, by their paths. The walk of
/// a mirror of the tree may tell it on several threads at once.
class FakeTreeWatch final : public ChangeSource, public ListingObserver {
 public:
  /// Becomes the tree's listener.
  explicit FakeTreeWatch(FakeTree& tree);

  void start(const std::vector<std::string>& folders) override;
  ListingObserver& listings() override { return *this; }
  void forget(const std::string& folder) override;
  std::optional<std::vector<FolderChange>> take() override;
  void beforeListing(const std::string& folder, int descriptor) override;

  /// The folders that it was told of, and not told to forget.
  const std::set<std::string>& held() const { return held_; }

 private:
  void hear(const std::string& folder, const std::string& entry, bool isAfter);

  FakeTree& tree_;
  std::vector<std::string> folders_;
  /// Where each led before what is being done.
  std::vector<std::optional<std::string>> ledTo_;
  /// The items by the paths that it touches, and whether they were folders.
  std::map<std::string, std::pair<const void*, bool>> touched_;
  std::size_t toldCount_ = 0;
  /// Guards what walks add to. While one goes on, nothing else is asked of the watch.
  std::mutex listingMutex_;
  /// Those of which changes are told: not where what was watched is elsewhere by now, or nowhere.
  std::set<std::string> told_;
  std::set<std::string> held_;
  std::vector<FolderChange> changes_;
};

}  // namespace cirrovane::test
