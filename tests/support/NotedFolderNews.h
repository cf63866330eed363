#pragma once

#include "platform/FolderWatch.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// Notes what a watch tells, on any thread, and lets a test wait for it.
class NotedFolderNews final : public FolderWatchListener {
 public:
  /// What a watch told.
  struct News {
    std::vector<FolderChange> changes;
    /// How many calls brought the changes.
    int calls = 0;
    std::vector<std::string> losses;
    /// Each standing told, in order; absent for one that stands.
    std::vector<std::optional<std::string>> standings;
    int proofs = 0;
  };

  /// Called on the watch's thread before changes are noted; set before the watch is started.
  std::function<void(const std::vector<FolderChange>&)> beforeChange;

  void changed(std::vector<FolderChange> changes) override {
    if (beforeChange) {
      beforeChange(changes);
    }
    note([&](News& news) {
      ++news.calls;
      news.changes.insert(news.changes.end(), changes.begin(), changes.end());
    });
  }
  void lost(std::string reason) override {
    note([&](News& news) { news.losses.push_back(std::move(reason)); });
  }
  void stands(std::optional<std::string> reasonAgainst) override {
    note([&](News& news) { news.standings.push_back(std::move(reasonAgainst)); });
  }
  void proved() override {
    note([](News& news) { ++news.proofs; });
  }

  /// Waits until the news are as wanted. Whether they came to be so in a time that no machine should need.
  bool waitUntil(const std::function<bool(const News&)>& isAsWanted) {
    std::unique_lock lock(mutex_);
    return noted_.wait_for(lock, std::chrono::seconds(60), [&] { return isAsWanted(news_); });
  }

  /// What was told since the last call.
  News take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(news_, {});
  }

 private:
  template <class Change>
  void note(Change change) {
    {
      const std::lock_guard lock(mutex_);
      change(news_);
    }
    noted_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable noted_;
  News news_;
};

}  // namespace cirrovane::test
