#pragma once

#include "platform/FolderWatch.h"
#include "platform/macos/plain/EventStream.h"
#include "platform/macos/plain/FolderAlias.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// Watches by the system's stream of changes, and believes in it as long as what is written into a folder of our own
/// comes back by it. All calls of the listener are made on the queue.
class StreamedWatch final : public FolderWatch, private ListingObserver {
 public:
  /// `ownFolder` is where this program keeps its files: never in iCloud.
  StreamedWatch(FolderWatchListener& listener, StreamSystem system, std::shared_ptr<SerialQueue> queue,
                std::string ownFolder);
  ~StreamedWatch() override;

  StreamedWatch(const StreamedWatch&) = delete;
  StreamedWatch& operator=(const StreamedWatch&) = delete;

  void start(const std::vector<std::string>& folders) override;
  ListingObserver& listings() override { return *this; }
  /// The stream tells of all folders, walked or not.
  void forget(const std::string& /*folder*/) override {}
  void prove() override;
  std::vector<std::chrono::seconds> laterReadings() const override;

  /// To be called when the machine slept until now: on any thread, also after the watch's end.
  std::function<void()> wakeNotice() const;

 private:
  class State;

  void beforeListing(const std::string& /*folder*/, int /*descriptor*/) override {}

  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<State> state_;
};

}  // namespace cirrovane
