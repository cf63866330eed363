#pragma once

#include "platform/macos/plain/MacWalk.h"
#include "tests/macos/EntryPacker.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::test {

inline constexpr std::uint32_t kLinkType = 5;
inline constexpr std::uint32_t kFIFOType = 7;

/// A file or folder of a fake Mac.
struct FakeMacNode {
  std::string name;
  std::uint32_t type = kRegularFileType;
  std::uint32_t flags = 0;
  std::int64_t modifiedSeconds = 0;
  /// The kernel's error for the entry; 0 for none.
  std::uint32_t entryError = 0;
  /// The error of opening the folder; 0 for none.
  int openError = 0;
  /// The error that its listing ends with after so many entries; 0 for none.
  int listError = 0;
  std::size_t entriesBeforeError = 0;
  /// Whether what the kernel writes of its entries has no meaning.
  bool isGarbled = false;
  /// Whether a URL can be made of its path, and the cloud be asked.
  bool hasURL = true;
  bool isUbiquitous = true;
  std::optional<bool> isUploaded;
  std::optional<DownloadingStatus> downloadingStatus;
  std::optional<std::string> uploadingError;

  FakeMacNode& add(const std::string& childName, std::uint32_t childType = kRegularFileType);
  FakeMacNode& addFolder(const std::string& childName) { return add(childName, kFolderType); }
  FakeMacNode* find(std::string_view childName);

  std::vector<std::unique_ptr<FakeMacNode>> children;
  std::map<std::string, FakeMacNode*, std::less<>> byName;
};

/// A policy on what is only in the cloud that may refuse to be set; of each thread its own.
class FakeMaterialization final : public MaterializationCalls {
 public:
  std::optional<int> policy(PolicyScope scope) const override;
  bool setPolicy(PolicyScope scope, int policy) const override;

  void refuse() { refuses_ = true; }
  /// Whether the calling thread may fetch nothing.
  static bool isOff();

 private:
  bool refuses_ = false;
};

/// A Mac whose files are a tree in memory, below one folder. What is asked of it is noted.
class FakeMacDisk final : public MacWalkCalls {
 public:
  explicit FakeMacDisk(std::string rootPath) : rootPath_(std::move(rootPath)) { root_.type = kFolderType; }

  FakeMacNode& root() { return root_; }
  /// Another path of the root, which leads there by a link.
  void linkTo(const std::string& path) { links_.insert(path); }
  /// Entries that are listed at a time at most.
  void listAtMost(std::size_t count) { mostEntries_ = count; }
  /// Endings of packages.
  void definePackage(const std::string& extension) { packages_.insert(extension); }

  int openFolder(int directory, const char* name, int flags) const override;
  int listEntries(int descriptor, std::span<char> target) const override;
  int readEntry(int descriptor, const char* name, std::span<char> target) const override;
  std::string withoutLinks(const std::string& path) const override;
  bool isPackageExtension(std::string_view extension) const override;
  bool readCloudState(const std::string& path, bool isFolder, WalkScope scope,
                      const ResourceTaker& take) const override;

  /// Calls by a thread that might have fetched something.
  int unguardedCalls() const { return unguarded_; }
  int calls() const { return calls_; }
  std::vector<std::string> extensionsAsked() const;
  /// Paths that the cloud was asked about, sorted.
  std::vector<std::string> pathsAsked() const;

 private:
  struct OpenFolder {
    FakeMacNode* node = nullptr;
    std::size_t position = 0;
  };

  void note() const;
  /// The node at a path below the root by its real path; nullptr when there is none.
  FakeMacNode* at(std::string_view path) const;
  FakeMacNode* nodeNamed(int directory, const char* name) const;

  const std::string rootPath_;
  mutable FakeMacNode root_;
  std::set<std::string> links_;
  std::set<std::string, std::less<>> packages_;
  std::size_t mostEntries_ = 1'000'000;

  mutable std::atomic<int> unguarded_ = 0;
  mutable std::atomic<int> calls_ = 0;
  mutable std::mutex mutex_;
  mutable std::map<int, OpenFolder> open_;
  mutable std::vector<std::string> extensionsAsked_;
  mutable std::vector<std::string> pathsAsked_;
};

}  // namespace cirrovane::test
