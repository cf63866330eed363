#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace cirrovane::demo {

/// What settling came to.
struct Settled {
  std::size_t changedItems = 0;
  /// Watched folders that were missing and now exist.
  std::vector<std::string> madeFolders;
  /// Watched folders that no longer are.
  std::vector<std::string> unwatchedFolders;
};

/// A folder that stands for the disk of a Mac, furnished for demonstrations and tests.
class DemoMac {
 public:
  /// Makes one in a new or an empty folder, or makes an old one again.
  static DemoMac create(const std::filesystem::path& root);

  /// One that exists; fails for any other folder.
  static DemoMac open(const std::filesystem::path& root);

  /// Makes every file uploaded and local, files that were added since as well, and sees to it that all watched folders
  /// exist, lie in iCloud Drive and miss no files. What is settled already is not touched.
  Settled settle();

  /// Gives the sample files the states and ages that they had at first, makes those that are gone, and brings back the
  /// watched folders of the beginning, the missing one missing. What was added since is left alone.
  void unsettle();

  const std::filesystem::path& root() const { return root_; }
  std::filesystem::path home() const;
  std::filesystem::path drive() const;

 private:
  explicit DemoMac(std::filesystem::path root) : root_(std::move(root)) {}

  std::size_t settleItems() const;
  void settleWatchlist(Settled& settled) const;
  void restoreWatchlist() const;
  void removeMissingFolder() const;

  std::filesystem::path root_;
};

}  // namespace cirrovane::demo
