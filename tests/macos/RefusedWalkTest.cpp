#include "core/ICloudScanEngine.h"
#include "platform/macos/RefusedWalk.h"
#include "tests/support/ManualClock.h"

#include <memory>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

/// A system on which no folder can be walked without a risk of downloads.
class RefusingFileSystem final : public FileSystem {
 public:
  bool exists(const std::string& /*path*/) const override { return true; }
  std::unique_ptr<FolderWalk> enumerate(const std::string& folder) const override {
    return std::make_unique<RefusedWalk>(folder);
  }
  VolumeCapacities volumeCapacities(const std::string& /*folder*/) const override { return {}; }
  std::string homeDirectory() const override { return "/Users/test"; }
  std::optional<std::string> applicationSupportDirectory() const override { return std::nullopt; }
};

TEST(RefusedWalk, next_givesOneUnreadableItemAndEnds) {
  RefusedWalk walk("/Users/test/Work");
  const ItemBatch* batch = walk.next();
  ASSERT_NE(batch, nullptr);
  ASSERT_EQ(batch->items().size(), 1U);
  EXPECT_EQ(batch->items()[0].name, "Work");
  EXPECT_EQ(batch->path(batch->items()[0]), "/Users/test/Work");
  EXPECT_FALSE(batch->items()[0].values);
  EXPECT_EQ(walk.next(), nullptr);
}

TEST(RefusedWalk, scan_countsAnErrorAndIsNotSafe) {
  const RefusingFileSystem fileSystem;
  const test::ManualClock clock;
  const ICloudScanEngine engine(fileSystem, clock);
  const WatchFolder folder{UUID(), "Work", "/Users/test/Library/Mobile Documents/com~apple~CloudDocs/Work"};
  const SyncHealthReport report = engine.scan({folder});
  EXPECT_EQ(report.metrics.errors, 1);
  EXPECT_EQ(report.metrics.totalFiles, 0);
  EXPECT_FALSE(report.safeToClose);
}

}  // namespace
}  // namespace cirrovane
