#include "platform/linux/host/HostDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/linux/watch/InotifyWatch.h"
#include "tests/core/ScanLife.h"
#include "tests/core/ScanLives.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/NotedFolderNews.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

// The same life on a real disk: what happens to a tree in memory is done to real files, and those are scanned.

namespace cirrovane::test {
namespace {

std::string attributeOf(const std::optional<FakeValues>& values) {
  if (!values) {
    return "no state at all";
  }
  std::string lines = values->isUbiquitousItem ? "" : "isUbiquitous=false\n";
  const auto add = [&](std::string_view key, std::string_view value) {
    lines.append(key).append("=").append(value).append("\n");
  };
  const auto addFlag = [&](std::string_view key, std::optional<bool> flag) {
    if (flag) {
      add(key, *flag ? "true" : "false");
    }
  };
  addFlag("isUploaded", values->isUploaded);
  addFlag("isUploading", values->isUploading);
  addFlag("hasUnresolvedConflicts", values->hasUnresolvedConflicts);
  if (values->downloadingStatus) {
    add("downloadingStatus", *values->downloadingStatus == DownloadingStatus::current ? "current" : "notDownloaded");
  }
  if (values->uploadingError) {
    add("uploadingError", *values->uploadingError);
  }
  if (values->downloadingError) {
    add("downloadingError", *values->downloadingError);
  }
  return lines;
}

class DiskMirror final : public TreeMirror {
 public:
  void madeFolder(const std::string& path) override { std::filesystem::create_directory(path); }
  void madeFile(const std::string& path, const std::optional<FakeValues>& values) override {
    // A link in its place would be written through.
    std::filesystem::remove(path);
    writeFile(path);
    setValues(path, values);
  }
  void setValues(const std::string& path, const std::optional<FakeValues>& values) override {
    setICloudAttribute(path, attributeOf(values));
    if (values && values->contentModificationDate) {
      const std::chrono::duration<double> sinceEpoch = values->contentModificationDate->time_since_epoch();
      setModified(path, sinceEpoch.count());
    }
  }
  void madeLink(const std::string& path, const std::string& target) override {
    std::filesystem::create_symlink(target, path);
  }
  void removed(const std::string& path) override { std::filesystem::remove_all(path); }
  void moved(const std::string& from, const std::string& to) override { std::filesystem::rename(from, to); }
  void setListable(const std::string& path, bool isListable) override {
    setICloudAttribute(path, isListable ? "isListable=true" : "isListable=false");
  }
};

/// What this system tells of the disk.
class SystemWatch final : public ChangeSource {
 public:
  void start(const std::vector<std::string>& folders) override {
    noted_.take();
    watch_.start(folders);
    EXPECT_TRUE(noted_.waitUntil([](const auto& news) { return !news.standings.empty(); }));
  }
  ListingObserver& listings() override { return watch_.listings(); }
  void forget(const std::string& folder) override { watch_.forget(folder); }
  std::optional<std::vector<FolderChange>> take() override {
    watch_.prove();
    EXPECT_TRUE(noted_.waitUntil([](const auto& news) { return news.proofs > 0; }));
    NotedFolderNews::News news = noted_.take();
    return news.losses.empty() ? std::optional(std::move(news.changes)) : std::nullopt;
  }

 private:
  NotedFolderNews noted_;
  InotifyWatch watch_{noted_};
};

/// A life on a disk of its own, beside the tree that it mirrors.
bool liveOnDisk(const std::function<bool(FakeTree& tree, const FileSystem& files, const std::string& home)>& live) {
  const TemporaryFolder folder(CIRROVANE_TEST_DIR);
  const LinuxFileSystem fileSystem(hostFolders(), hostVolume);
  const std::string home = folder / "Library/Mobile Documents/com~apple~CloudDocs/Documents";
  FakeTree tree;
  for (std::size_t end = home.find('/', 1); end != std::string::npos; end = home.find('/', end + 1)) {
    tree.makeFolder(home.substr(0, end));
  }
  tree.makeFolder(home);
  makeFolder(home);
  DiskMirror mirror;
  tree.setMirror(&mirror);
  return live(tree, fileSystem, home);
}

TEST(ScanLifeOnDisk, toldByTheTest_agreesWithAFullScan) {
  liveLives(/*usualSteps=*/750, [](std::uint32_t seed, std::size_t steps, ScanLife::Tally& tally) {
    return liveOnDisk([&](FakeTree& tree, const FileSystem& files, const std::string& home) {
      FakeTreeWatch watch(tree);
      ScanLife life({tree, files, watch, home, true, [&] { return watch.held(); }}, seed);
      const bool hasLived = life.live(steps);
      tally = life.tally();
      return hasLived;
    });
  });
}

TEST(ScanLifeOnDisk, toldByTheSystem_agreesWithAFullScan) {
  liveLives(/*usualSteps=*/750, [](std::uint32_t seed, std::size_t steps, ScanLife::Tally& tally) {
    return liveOnDisk([&](FakeTree& tree, const FileSystem& files, const std::string& home) {
      SystemWatch watch;
      ScanLife life({tree, files, watch, home, true, nullptr}, seed);
      const bool hasLived = life.live(steps);
      tally = life.tally();
      return hasLived;
    });
  });
}

}  // namespace
}  // namespace cirrovane::test
