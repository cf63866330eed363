#include "platform/macos/FSEventsWatch.h"

#include "base/Path.h"
#include "platform/macos/DispatchQueue.h"
#include "platform/macos/SystemWalkCalls.h"
#include "platform/macos/WorkspaceNotice.h"
#include "platform/macos/plain/PackageExtensions.h"
#include "platform/macos/plain/StreamedWatch.h"

#include <chrono>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

/// As a walk decides it: what the walk enters, the watch may not be blind to.
bool isPackage(const std::string& path) {
  const std::string_view extension = packageExtensionOf(lastPathComponent(path));
  return !extension.empty() && isSystemPackageExtension(extension);
}

StreamSystem systemOn(const std::shared_ptr<DispatchQueue>& queue) {
  StreamSystem system;
  // Not the queue itself: what is on it holds the system.
  system.makeStream = [weak = std::weak_ptr(queue)](const std::vector<std::string>& paths,
                                                    std::function<void(std::vector<StreamEvent>)> tell) {
    const std::shared_ptr<DispatchQueue> held = weak.lock();
    return held ? held->makeStream(paths, std::move(tell)) : nullptr;
  };
  system.withoutLinks = pathWithoutLinks;
  system.isPackage = isPackage;
  return system;
}

class FSEventsWatch final : public FolderWatch {
 public:
  FSEventsWatch(FolderWatchListener& listener, const std::string& ownFolder,
                const std::shared_ptr<DispatchQueue>& queue)
      : watch_(listener, systemOn(queue), queue, ownFolder),
        wake_(WorkspaceNotice::Event::machineWoke, watch_.wakeNotice()) {}

  void start(const std::vector<std::string>& folders) override { watch_.start(folders); }
  ListingObserver& listings() override { return watch_.listings(); }
  void forget(const std::string& folder) override { watch_.forget(folder); }
  void prove() override { watch_.prove(); }
  std::vector<std::chrono::seconds> laterReadings() const override { return watch_.laterReadings(); }

 private:
  StreamedWatch watch_;
  WorkspaceNotice wake_;
};

}  // namespace

std::unique_ptr<FolderWatch> makeFSEventsWatch(FolderWatchListener& listener, const std::string& ownFolder) {
  return std::make_unique<FSEventsWatch>(listener, ownFolder, std::make_shared<DispatchQueue>());
}

}  // namespace cirrovane
