#include "platform/linux/LinuxFileSystem.h"
#include "platform/linux/macroot/MacRoot.h"
#include "tests/core/ScanLife.h"
#include "tests/core/ScanLives.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

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

TEST(ScanLifeOnDisk, toldByTheTest_agreesWithAFullScan) {
  liveLives(/*usualSteps=*/750, [](std::uint32_t seed, std::size_t steps, ScanLife::Tally& tally) {
    const TemporaryFolder folder(CIRROVANE_TEST_DIR);
    const MacRoot root = *MacRoot::open(folder.path());
    const LinuxFileSystem fileSystem(root);
    const std::string home = folder / "Library/Mobile Documents/com~apple~CloudDocs/Documents";
    FakeTree tree;
    for (std::size_t end = home.find('/', 1); end != std::string::npos; end = home.find('/', end + 1)) {
      tree.makeFolder(home.substr(0, end));
    }
    tree.makeFolder(home);
    makeFolder(home);
    DiskMirror mirror;
    tree.setMirror(&mirror);
    FakeTreeWatch watch(tree);
    ScanLife life({tree, fileSystem, watch, home, true, [&] { return watch.held(); }}, seed);
    const bool hasLived = life.live(steps);
    tally = life.tally();
    return hasLived;
  });
}

}  // namespace
}  // namespace cirrovane::test
