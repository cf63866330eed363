#pragma once

#include "base/FileDescriptor.h"

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace cirrovane {

/// A folder met by a walk: its name and the folder above it. Names and not whole paths, so that a tree of any depth
/// costs memory by its folders alone.
struct WalkedFolder {
  /// nullptr for the folder that the walk started at, whose name is then its whole path.
  const WalkedFolder* parent = nullptr;
  std::string name;
};

/// The folder's path; with an item's name, that item's path.
std::string pathOf(const WalkedFolder& folder);
std::string pathOf(const WalkedFolder& folder, std::string_view itemName);

/// The system's call that opens a folder by its name within another, as openat has it: a descriptor, or -1 with errno
/// set. A value, so that a test can stand in for a system that refuses. Called by several threads at once.
using OpenCall = std::function<int(int directory, const char* name, int flags)>;

/// The system's own.
int openFolder(int directory, const char* name, int flags);

/// How the opening of a folder ended.
enum class FolderOpening {
  opened,
  /// The folder is gone, is no folder any more, or may not be read.
  unreadable,
  /// This process has no descriptor or memory left: the folder may well be readable.
  exhausted,
};

/// Opens the folders of a walk, each by its name within its parent and never through a link, so that depth knows no
/// limit and a folder that is replaced meanwhile leads nowhere else. Keeps a limited number open for their children.
/// Callable on any thread.
class FolderDescriptors {
 public:
  using Descriptor = std::shared_ptr<const FileDescriptor>;

  struct Opened {
    FolderOpening result;
    /// Set when opened; stays open for as long as somebody holds it.
    Descriptor descriptor = nullptr;
    /// The system's number for why it is unreadable.
    int error = 0;
  };

  /// At most `capacity` folders are kept open beside those in use.
  explicit FolderDescriptors(std::size_t capacity, OpenCall open = openFolder)
      : capacity_(capacity), open_(std::move(open)) {}

  Opened open(const WalkedFolder& folder);
  /// Says that nothing more will be opened below the folder.
  void forget(const WalkedFolder& folder);

  /// A capacity that leaves most of this process's descriptors to others.
  static std::size_t reasonableCapacity();

 private:
  struct Entry {
    const WalkedFolder* folder;
    Descriptor descriptor;
  };
  using Entries = std::list<Entry>;

  Entries::iterator find(const WalkedFolder& folder);
  Opened openBelow(const WalkedFolder& folder, const FileDescriptor* parent);

  std::mutex mutex_;
  std::size_t capacity_;
  OpenCall open_;
  /// Most recently used first. Short enough to search: what a walk needs next stands at its front.
  Entries entries_;
};

}  // namespace cirrovane
