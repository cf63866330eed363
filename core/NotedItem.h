#pragma once

#include "core/FileJudgement.h"
#include "platform/FileSystem.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// Whether anything stands against an item, or will as time goes by.
inline bool isNotable(const std::optional<ResourceValues>& values) {
  bool isNotable = !values;
  ScanMetrics metrics;
  judgeItem(
      values, metrics, [](Time) { return true; }, [&](const auto&...) { isNotable = true; });
  return isNotable;
}

/// Whether the item alone rules out a safe close; uploads that go on since before that time are stalled.
bool isBlocking(const std::optional<ResourceValues>& values, Time staleBefore);

/// What an index keeps of a notable item: its values and all that they look at, in little memory.
class NotedItem {
 public:
  explicit NotedItem(const Item& item);

  const std::string& name() const { return name_; }
  /// The values as they were read; their texts live as long as this does.
  std::optional<ResourceValues> values() const;
  /// The date from which an upload that goes on counts; absent where none goes on, or there is no date.
  std::optional<Time> uploadingSince() const {
    return isUploading_.value_or(false) && isDated_ ? std::optional(modified_) : std::nullopt;
  }

  friend bool operator==(const NotedItem& lhs, const NotedItem& rhs);

 private:
  struct Texts {
    std::optional<std::string> uploadingError;
    std::optional<std::string> downloadingError;
    friend bool operator==(const Texts&, const Texts&) = default;
  };

  std::string name_;
  /// Hardly any item has one.
  std::unique_ptr<const Texts> texts_;
  Time modified_;
  std::int64_t size_ = 0;
  bool isReadable_ = false;
  bool isUbiquitous_ = false;
  bool isDated_ = false;
  bool isSized_ = false;
  std::optional<bool> isUploaded_;
  std::optional<bool> isUploading_;
  std::optional<bool> hasUnresolvedConflicts_;
  std::optional<DownloadingStatus> downloadingStatus_;
};

}  // namespace cirrovane
