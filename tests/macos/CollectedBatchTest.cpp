#include "platform/macos/plain/CollectedBatch.h"

#include <map>
#include <optional>
#include <string>

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
  FakeDictionary& withDate(double seconds) {
    date_ = seconds;
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
  std::optional<double> secondsSince1970(ResourceKey key) const override {
    return key == ResourceKey::contentModificationDate ? date_ : std::nullopt;
  }
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
  std::optional<double> date_;
  std::optional<DownloadingStatus> status_;
};

FakeDictionary ubiquitousFile() {
  return FakeDictionary().with(ResourceKey::isUbiquitousItem, true).with(ResourceKey::isDirectory, false);
}

/// The values that a batch holds for an item of which the system says this.
std::optional<ResourceValues> valuesFor(CollectedBatch& batch, const FakeDictionary& dictionary) {
  batch.add("/d/item", &dictionary);
  return batch.items().back().values;
}

TEST(CollectedBatch, everyKeyAnswered_everyValueArrives) {
  CollectedBatch batch;
  const auto values = valuesFor(batch, ubiquitousFile()
                                           .with(ResourceKey::ubiquitousItemIsUploaded, false)
                                           .with(ResourceKey::ubiquitousItemIsUploading, true)
                                           .with(ResourceKey::ubiquitousItemHasUnresolvedConflicts, true)
                                           .withStatus(DownloadingStatus::downloaded)
                                           .withError(ResourceKey::ubiquitousItemUploadingError, "No room.")
                                           .withError(ResourceKey::ubiquitousItemDownloadingError, "No network.")
                                           .withDate(1.5));
  ASSERT_TRUE(values);
  EXPECT_FALSE(values->isDirectory);
  EXPECT_TRUE(values->isUbiquitousItem);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_EQ(values->isUploading, true);
  EXPECT_EQ(values->hasUnresolvedConflicts, true);
  EXPECT_EQ(values->downloadingStatus, DownloadingStatus::downloaded);
  EXPECT_EQ(values->uploadingError, "No room.");
  EXPECT_EQ(values->downloadingError, "No network.");
  EXPECT_EQ(values->contentModificationDate, Time(std::chrono::milliseconds(1500)));
}

TEST(CollectedBatch, keysWithoutAnswer_areHandedOnAsAbsent) {
  CollectedBatch batch;
  const auto values = valuesFor(batch, ubiquitousFile());
  ASSERT_TRUE(values);
  EXPECT_EQ(values->isUploaded, std::nullopt);
  EXPECT_EQ(values->isUploading, std::nullopt);
  EXPECT_EQ(values->hasUnresolvedConflicts, std::nullopt);
  EXPECT_EQ(values->downloadingStatus, std::nullopt);
  EXPECT_EQ(values->uploadingError, std::nullopt);
  EXPECT_EQ(values->downloadingError, std::nullopt);
  EXPECT_EQ(values->contentModificationDate, std::nullopt);
}

TEST(CollectedBatch, noAnswerAtAll_isAnItemThatIsNeitherFolderNorInTheCloud) {
  CollectedBatch batch;
  const auto values = valuesFor(batch, FakeDictionary());
  ASSERT_TRUE(values);
  EXPECT_FALSE(values->isDirectory);
  EXPECT_FALSE(values->isUbiquitousItem);
}

TEST(CollectedBatch, folder_isOne) {
  CollectedBatch batch;
  const auto values = valuesFor(batch, ubiquitousFile().with(ResourceKey::isDirectory, true));
  ASSERT_TRUE(values);
  EXPECT_TRUE(values->isDirectory);
}

TEST(CollectedBatch, unreadableItem_hasNameAndPathButNoValues) {
  CollectedBatch batch;
  batch.add("/d/locked", nullptr);
  ASSERT_EQ(batch.items().size(), 1U);
  EXPECT_EQ(batch.items()[0].name, "locked");
  EXPECT_EQ(batch.path(batch.items()[0]), "/d/locked");
  EXPECT_FALSE(batch.items()[0].values);
}

TEST(CollectedBatch, manyItems_keepTheirOwnNamesPathsAndTexts) {
  constexpr int kCount = 2000;
  CollectedBatch batch;
  for (int number = 0; number < kCount; ++number) {
    // Short and long texts, since a short one lies inside of its string and moves with it.
    const std::string text = std::to_string(number) + (number % 2 == 0 ? "" : std::string(100, 'x'));
    FakeDictionary dictionary = ubiquitousFile().withError(ResourceKey::ubiquitousItemUploadingError, text);
    batch.add("/d/" + text, &dictionary);
  }
  ASSERT_EQ(batch.size(), std::size_t{kCount});
  for (int number = 0; number < kCount; ++number) {
    const std::string text = std::to_string(number) + (number % 2 == 0 ? "" : std::string(100, 'x'));
    const Item& item = batch.items()[static_cast<std::size_t>(number)];
    EXPECT_EQ(item.name, text);
    EXPECT_EQ(batch.path(item), "/d/" + text);
    EXPECT_EQ(item.values->uploadingError, text);
  }
}

TEST(CollectedBatch, clearedBatch_holdsOnlyWhatComesAfter) {
  CollectedBatch batch;
  batch.add("/d/before", nullptr);
  batch.clear();
  EXPECT_EQ(batch.size(), 0U);
  batch.add("/d/after", nullptr);
  ASSERT_EQ(batch.items().size(), 1U);
  EXPECT_EQ(batch.path(batch.items()[0]), "/d/after");
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

TEST(ResourceKeys, list_holdsEachKeyOnce) {
  int position = 0;
  for (const ResourceKey key : kResourceKeys) {
    EXPECT_EQ(static_cast<int>(key), position++);
  }
  EXPECT_EQ(static_cast<int>(ResourceKey::ubiquitousItemDownloadingError) + 1, position);
}

}  // namespace
}  // namespace cirrovane
