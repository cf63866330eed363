#pragma once

#include "base/FileDescriptor.h"
#include "platform/FolderWatch.h"
#include "platform/linux/watch/FolderWay.h"
#include "platform/linux/watch/InotifyCalls.h"
#include "platform/linux/watch/InotifyRecord.h"
#include "platform/linux/watch/WatchedFolders.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace cirrovane {

/// Watches by inotify: each folder of the walks, and the way to each watched folder. A thread of its own waits for what
/// the system tells, costs nothing meanwhile, and makes all calls of the listener.
class InotifyWatch final : public FolderWatch, private ListingObserver {
 public:
  explicit InotifyWatch(FolderWatchListener& listener, InotifyCalls calls = {});
  /// Waits for the listener's call that is under way.
  ~InotifyWatch() override;

  InotifyWatch(const InotifyWatch&) = delete;
  InotifyWatch& operator=(const InotifyWatch&) = delete;

  void start(const std::vector<std::string>& folders) override;
  ListingObserver& listings() override { return *this; }
  void forget(const std::string& folder) override;
  void prove() override;
  std::vector<std::chrono::seconds> laterReadings() const override { return {}; }

 private:
  /// What is asked of the thread.
  struct Requests {
    std::optional<std::vector<std::string>> folders;
    bool wantsProof = false;
    bool isStopping = false;
  };
  /// What there is to tell.
  struct News {
    std::vector<FolderChange> changes;
    std::optional<std::string> loss;
  };
  /// A watched folder and what lies on the way to it.
  struct WatchedRoot {
    std::string path;
    std::vector<WayStep> steps;
    /// Whether something on the way changed since it was followed.
    bool isStale = true;
  };

  void beforeListing(const std::string& folder, int descriptor) override;

  void wake() const;
  Requests takeRequests();
  void run();
  void begin(const std::vector<std::string>& folders);
  /// Reads what is queued, at most a buffer full. The bytes read; 0 when nothing is queued.
  std::size_t readEvents(std::vector<char>& buffer, News& news);
  void tell(News news);
  /// Tells of the standing where it is not the one told last. Whether it was told.
  bool tellStanding();

  // All of these are called with the folders' lock held.
  void interpret(const InotifyRecord& record, News& news);
  void interpretBelow(WatchedFolders::Folder& folder, const InotifyRecord& record, News& news);
  void interpretOnWays(const InotifyRecord& record);
  /// Follows the ways that changed anew.
  void followWays(News& news);
  void markWaysStale();
  bool isOnWay(int watch) const;
  void remove(WatchedFolders::Folder& folder);
  /// Ends the watch if nothing needs it any more.
  void release(int watch);
  int watch(int descriptor, const std::string& path, std::uint32_t mask);
  void checkFileSystem(dev_t device, int descriptor, const std::string& path);
  void weaken(const std::string& reason);

  FolderWatchListener& listener_;
  const InotifyCalls calls_;
  const FileDescriptor wakeUp_;

  std::mutex requestsMutex_;
  Requests requests_;

  std::mutex foldersMutex_;
  FileDescriptor instance_;
  WatchedFolders folders_;
  std::vector<WatchedRoot> roots_;
  std::set<dev_t> knownDevices_;
  /// Why changes may go unnoticed; absent when none can.
  std::optional<std::string> weakness_;

  // The thread's own.
  FileDescriptor mounts_;
  /// Whether the standing was told since the start, and the weakness that was told with it.
  bool hasToldStanding_ = false;
  std::optional<std::string> toldWeakness_;

  std::thread thread_;
};

}  // namespace cirrovane
