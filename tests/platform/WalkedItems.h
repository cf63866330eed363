#pragma once

#include "platform/FileSystem.h"

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace cirrovane::test {

/// What a walk told of one item's state, kept beyond its batch.
struct WalkedValues {
  bool isDirectory = false;
  bool isUbiquitousItem = false;
  std::optional<bool> isUploaded;
  std::optional<bool> isUploading;
  std::optional<bool> hasUnresolvedConflicts;
  std::optional<DownloadingStatus> downloadingStatus;
  std::optional<std::string> uploadingError;
  std::optional<std::string> downloadingError;
  std::optional<Time> contentModificationDate;
};

/// One item as a walk gave it out.
struct WalkedItem {
  std::string name;
  /// Empty when paths were not asked for.
  std::string path;
  std::optional<WalkedValues> values;
};

/// Whether an item's path is worked out too: in a tree of great depth, paths are most of the work.
enum class Paths { wanted, unwanted };

/// Everything that is left of the walk.
std::vector<WalkedItem> restOf(FolderWalk& walk, Paths paths = Paths::wanted);

/// The item of that name; fails the test, and gives an item without anything, unless there is exactly one.
WalkedItem onlyItemNamed(const std::vector<WalkedItem>& items, const std::string& name);

std::vector<std::string> pathsOf(const std::vector<WalkedItem>& items);
std::vector<std::string> namesOf(const std::vector<WalkedItem>& items);

/// What a walk should give out of a tree that stands still, by a plain recursion on one thread: paths, or names.
std::vector<std::string> naiveWalk(const std::string& folder, Paths paths = Paths::wanted);

/// One of the ways to walk a folder, all of which have to give the same.
struct WalkKind {
  const char* name;
  std::function<std::unique_ptr<FolderWalk>(const std::string& folder)> start;
};
std::ostream& operator<<(std::ostream& out, const WalkKind& kind);

const std::vector<WalkKind>& allWalkKinds();

/// Walks the folder to the end.
std::vector<WalkedItem> walked(const WalkKind& kind, const std::string& folder, Paths paths = Paths::wanted);

/// Makes permission bits count for this thread and the threads that it starts, as long as it lives, also when root
/// runs the tests.
class WithoutPrivileges {
 public:
  WithoutPrivileges();
  ~WithoutPrivileges();
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

 private:
  unsigned effective_ = 0;
};

/// Leaves this process only so many file descriptors to open, as long as it lives.
class FewDescriptors {
 public:
  explicit FewDescriptors(int count);
  ~FewDescriptors();
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  unsigned long limit_ = 0;
  std::vector<int> taken_;
};

/// How many file descriptors this process has open.
std::size_t openDescriptorCount();

}  // namespace cirrovane::test
