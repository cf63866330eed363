#pragma once

#include "platform/FolderWatch.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// Watches nothing: notes what it is asked for, and tells what a test has it tell, on the test's thread.
class FakeFolderWatch final : public FolderWatch, private ListingObserver {
 public:
  explicit FakeFolderWatch(FolderWatchListener& listener) : listener_(listener) {}

  /// How it answers `start`: by standing, or not with this reason.
  std::optional<std::string> reasonAgainst;
  /// Whether `start` is answered at once; else by `tellStanding`.
  bool standsAtOnce = true;
  /// Whether `prove` is answered at once; else by `answerProof`.
  bool provesAtOnce = true;
  std::vector<std::chrono::seconds> later;

  /// The folders of each `start`, in order.
  std::vector<std::vector<std::string>> starts;
  std::vector<std::string> forgotten;
  int proofsAsked = 0;

  /// The folders that walks told of, in order.
  std::vector<std::string> listed() const {
    const std::lock_guard lock(mutex_);
    return listed_;
  }

  void tell(std::vector<FolderChange> changes) { listener_.changed(std::move(changes)); }
  void tell(const std::string& folder, const std::string& item = {}) { tell({{folder, item, /*isDeep=*/false}}); }
  void tellDeep(const std::string& folder) { tell({{folder, {}, /*isDeep=*/true}}); }
  void lose(const std::string& reason = "Changes were missed.") { listener_.lost(reason); }
  void tellStanding(std::optional<std::string> reason = std::nullopt) { listener_.stands(std::move(reason)); }
  void answerProof() { listener_.proved(); }

  void start(const std::vector<std::string>& folders) override {
    starts.push_back(folders);
    if (standsAtOnce) {
      listener_.stands(reasonAgainst);
    }
  }
  ListingObserver& listings() override { return *this; }
  void forget(const std::string& folder) override { forgotten.push_back(folder); }
  void prove() override {
    ++proofsAsked;
    if (provesAtOnce) {
      listener_.proved();
    }
  }
  std::vector<std::chrono::seconds> laterReadings() const override { return later; }

 private:
  void beforeListing(const std::string& folder, int /*descriptor*/) override {
    const std::lock_guard lock(mutex_);
    listed_.push_back(folder);
  }

  FolderWatchListener& listener_;
  mutable std::mutex mutex_;
  std::vector<std::string> listed_;
};

}  // namespace cirrovane::test
