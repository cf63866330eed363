#include "platform/macos/plain/ResourceDictionary.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

/// An answer of the system, made of what a test puts in.
class FakeDictionary final : public ResourceDictionary {
 public:
  FakeDictionary& with(ResourceKey key, bool value) {
    booleans_[key] = value;
    return *this;
  }
  FakeDictionary& withStatus(DownloadingStatus status) {
    status_ = status;
    return *this;
  }
  FakeDictionary& withError(ResourceKey key, std::string text) {
    errors_[key] = std::move(text);
    return *this;
  }

  std::optional<bool> boolean(ResourceKey key) const override { return found(booleans_, key); }
  std::optional<DownloadingStatus> downloadingStatus() const override { return status_; }
  std::optional<std::string> errorText(ResourceKey key) const override { return found(errors_, key); }

 private:
  template <class Value>
  static std::optional<Value> found(const std::map<ResourceKey, Value>& values, ResourceKey key) {
    const auto entry = values.find(key);
    return entry != values.end() ? std::optional(entry->second) : std::nullopt;
  }

  std::map<ResourceKey, bool> booleans_;
  std::map<ResourceKey, std::string> errors_;
  std::optional<DownloadingStatus> status_;
};

FakeDictionary ubiquitousItem() {
  return FakeDictionary().with(ResourceKey::isUbiquitousItem, true);
}

class CloudState : public testing::Test {
 protected:
  ResourceValues valuesFor(const FakeDictionary& dictionary, WalkScope scope = WalkScope::shown) {
    ResourceValues values;
    addCloudState(
        dictionary, scope, [this](std::string text) { return std::string_view(texts_.emplace_back(std::move(text))); },
        values);
    return values;
  }

 private:
  std::deque<std::string> texts_;
};

TEST_F(CloudState, everyKeyAnswered_everyValueArrives) {
  const ResourceValues values = valuesFor(ubiquitousItem()
                                              .with(ResourceKey::ubiquitousItemIsUploaded, false)
                                              .with(ResourceKey::ubiquitousItemIsUploading, true)
                                              .with(ResourceKey::ubiquitousItemHasUnresolvedConflicts, true)
                                              .withStatus(DownloadingStatus::downloaded)
                                              .withError(ResourceKey::ubiquitousItemUploadingError, "No room.")
                                              .withError(ResourceKey::ubiquitousItemDownloadingError, "No network."));
  EXPECT_TRUE(values.isUbiquitousItem);
  EXPECT_EQ(values.isUploaded, false);
  EXPECT_EQ(values.isUploading, true);
  EXPECT_EQ(values.hasUnresolvedConflicts, true);
  EXPECT_EQ(values.downloadingStatus, DownloadingStatus::downloaded);
  EXPECT_EQ(values.uploadingError, "No room.");
  EXPECT_EQ(values.downloadingError, "No network.");
}

TEST_F(CloudState, keysWithoutAnswer_areHandedOnAsAbsent) {
  const ResourceValues values = valuesFor(ubiquitousItem());
  EXPECT_TRUE(values.isUbiquitousItem);
  EXPECT_EQ(values.isUploaded, std::nullopt);
  EXPECT_EQ(values.isUploading, std::nullopt);
  EXPECT_EQ(values.hasUnresolvedConflicts, std::nullopt);
  EXPECT_EQ(values.downloadingStatus, std::nullopt);
  EXPECT_EQ(values.uploadingError, std::nullopt);
  EXPECT_EQ(values.downloadingError, std::nullopt);
}

TEST_F(CloudState, whatWalksOverEverythingTell_arrivesInThemAlone) {
  const FakeDictionary left = FakeDictionary()
                                  .with(ResourceKey::isUbiquitousItem, false)
                                  .with(ResourceKey::ubiquitousItemIsExcludedFromSync, true)
                                  .with(ResourceKey::ubiquitousItemIsSyncPaused, false)
                                  .with(ResourceKey::isPackage, true);
  const ResourceValues values = valuesFor(left, WalkScope::everything);
  EXPECT_FALSE(values.isUbiquitousItem);
  EXPECT_EQ(values.isExcludedFromSync, true);
  EXPECT_EQ(values.isSyncPaused, false);
  EXPECT_EQ(values.isPackage, true);
  const ResourceValues ofScan = valuesFor(left);
  EXPECT_EQ(ofScan.isExcludedFromSync, std::nullopt);
  EXPECT_EQ(ofScan.isSyncPaused, std::nullopt);
  EXPECT_EQ(ofScan.isPackage, std::nullopt);
}

TEST_F(CloudState, noAnswerAtAll_isAnItemThatIsNotInTheCloud) {
  EXPECT_FALSE(valuesFor(FakeDictionary()).isUbiquitousItem);
}

TEST_F(CloudState, whatElseIsKnown_stays) {
  ResourceValues values;
  values.isDirectory = true;
  values.contentModificationDate = Time();
  addCloudState(
      ubiquitousItem(), WalkScope::shown, [](const std::string& /*text*/) { return std::string_view(); }, values);
  EXPECT_TRUE(values.isDirectory);
  EXPECT_EQ(values.contentModificationDate, Time());
}

constexpr DownloadingStatusNames kNames = {"the-current", "the-downloaded", "the-absent"};

TEST(DownloadingStatusOf, eachName_isItsStatus) {
  EXPECT_EQ(downloadingStatusOf("the-current", kNames), DownloadingStatus::current);
  EXPECT_EQ(downloadingStatusOf("the-downloaded", kNames), DownloadingStatus::downloaded);
  EXPECT_EQ(downloadingStatusOf("the-absent", kNames), DownloadingStatus::notDownloaded);
}

TEST(DownloadingStatusOf, nameThatNobodyKnew_isNotCurrent) {
  EXPECT_EQ(downloadingStatusOf("the-currently-something", kNames), DownloadingStatus::notDownloaded);
  EXPECT_EQ(downloadingStatusOf("", kNames), DownloadingStatus::notDownloaded);
}

TEST(ResourceKeys, scan_asksForWhatAScanTells) {
  EXPECT_EQ(resourceKeysFor(WalkScope::shown).size(), 7U);
  EXPECT_EQ(resourceKeysFor(WalkScope::shown).back(), ResourceKey::ubiquitousItemDownloadingError);
  EXPECT_EQ(resourceKeysFor(WalkScope::everything).size(), kResourceKeys.size());
}

TEST(ResourceKeys, list_holdsEachKeyOnce) {
  int position = 0;
  for (const ResourceKey key : kResourceKeys) {
    EXPECT_EQ(static_cast<int>(key), position++);
  }
  EXPECT_EQ(static_cast<int>(ResourceKey::isPackage) + 1, position);
}

}  // namespace
}  // namespace cirrovane
