#include "platform/linux/watch/InotifyWatch.h"

#include "platform/linux/walk/Packages.h"
#include "platform/linux/watch/UntoldFileSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>
#include <tuple>
#include <unistd.h>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// What can change the way to a folder.
constexpr std::uint32_t kWayMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB | IN_DELETE_SELF |
                                   IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;
/// What can change the items of a folder.
constexpr std::uint32_t kFolderMask = kWayMask | IN_CLOSE_WRITE | IN_MODIFY;

constexpr std::uint32_t kComes = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t kGoes = IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t kIsNoChangeOfWay = IN_CLOSE_WRITE | IN_MODIFY;

/// Holds any one event, and some thousand usual ones.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

/// Also the reason of a watch that was asked for a proof before it was started.
constexpr const char* kNothingWatched = "No folder is watched yet.";

std::string pathOf(const WatchedFolders::Folder& folder) {
  return cirrovane::pathOf(folder.first);
}

/// Opens the folder that the path leads to now.
FolderDescriptors::Opened openByPath(const WatchedFolders::Folder& folder) {
  return FolderDescriptors(/*capacity=*/1).open(folder.first);
}

bool isSameFolder(int left, int right) {
  struct stat ours {};
  struct stat theirs {};
  return fstat(left, &ours) == 0 && fstat(right, &theirs) == 0 && ours.st_dev == theirs.st_dev &&
         ours.st_ino == theirs.st_ino;
}

void foldDuplicates(std::vector<FolderChange>& changes) {
  const auto key = [](const FolderChange& change) { return std::tie(change.folder, change.item, change.isDeep); };
  std::ranges::sort(changes, {}, key);
  const auto rest = std::ranges::unique(changes);
  changes.erase(rest.begin(), rest.end());
}

}  // namespace

InotifyWatch::InotifyWatch(FolderWatchListener& listener, InotifyCalls calls)
    : listener_(listener),
      calls_(std::move(calls)),
      wakeUp_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      weakness_(kNothingWatched) {}

InotifyWatch::~InotifyWatch() {
  if (thread_.joinable()) {
    {
      const std::lock_guard lock(requestsMutex_);
      requests_.isStopping = true;
    }
    wake();
    thread_.join();
  }
}

void InotifyWatch::start(const std::vector<std::string>& folders) {
  {
    const std::lock_guard lock(requestsMutex_);
    requests_.folders = folders;
  }
  if (!thread_.joinable()) {
    try {
      if (!wakeUp_.isOpen()) {
        throw std::system_error(EMFILE, std::generic_category());
      }
      thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
      // There is no thread to call the listener at the same time.
      listener_.stands(fmt::format("Nothing can be watched: {}.", error.code().message()));
      return;
    }
  }
  wake();
}

void InotifyWatch::forget(const std::string& folder) {
  const std::lock_guard lock(foldersMutex_);
  if (WatchedFolders::Folder* known = folders_.find(folder)) {
    remove(*known);
  }
}

void InotifyWatch::prove() {
  if (!thread_.joinable()) {
    listener_.stands(kNothingWatched);
    return;
  }
  {
    const std::lock_guard lock(requestsMutex_);
    requests_.wantsProof = true;
  }
  wake();
}

void InotifyWatch::beforeListing(const std::string& folder, int descriptor) {
  const std::lock_guard lock(foldersMutex_);
  WatchedFolders::Folder* known = instance_.isOpen() ? folders_.make(folder) : nullptr;
  if (known == nullptr) {
    return;
  }
  const int watched = watch(descriptor, folder, kFolderMask);
  if (watched < 0) {
    weaken(watchRefusal(errno, folder));
    return;
  }
  if (known->second == watched) {
    return;
  }
  const int former = known->second;
  if (former >= 0) {
    // Two walks may hold two folders that had this path one after the other. The one that has it now is right: a later
    // change of the path is still to be told.
    const FolderDescriptors::Opened current = openByPath(*known);
    if (current.result == FolderOpening::exhausted) {
      weaken(watchRefusal(EMFILE, folder));
    }
    if (current.result != FolderOpening::opened || !isSameFolder(current.descriptor->get(), descriptor)) {
      release(watched);
      return;
    }
  }
  folders_.bind(*known, watched);
  release(former);
}

void InotifyWatch::wake() const {
  // Only a counter that is full already refuses, and that wakes as well.
  eventfd_write(wakeUp_.get(), 1);
}

InotifyWatch::Requests InotifyWatch::takeRequests() {
  eventfd_t count = 0;
  eventfd_read(wakeUp_.get(), &count);
  const std::lock_guard lock(requestsMutex_);
  return std::exchange(requests_, {});
}

void InotifyWatch::run() {
  std::vector<char> buffer(kBufferSize);
  while (true) {
    // The wake-up comes first: what it asks for covers what the others have to say at that moment.
    std::array<pollfd, 3> sources = {
        {{wakeUp_.get(), POLLIN, 0}, {mounts_.get(), POLLPRI, 0}, {instance_.get(), POLLIN, 0}}};
    if (poll(sources.data(), sources.size(), -1) < 0) {
      continue;
    }
    const Requests requests = sources[0].revents != 0 ? takeRequests() : Requests();
    if (requests.isStopping) {
      return;
    }
    if (requests.folders) {
      begin(*requests.folders);
    }
    News news;
    if (!requests.folders && sources[1].revents != 0) {
      const std::lock_guard lock(foldersMutex_);
      news.loss = "A volume was mounted or unmounted.";
      knownDevices_.clear();
      markWaysStale();
    }
    int queued = 0;
    if (requests.wantsProof && instance_.isOpen()) {
      ioctl(instance_.get(), FIONREAD, &queued);
    }
    std::size_t length = 0;
    do {
      length = readEvents(buffer, news);
      queued -= static_cast<int>(length);
      tell(std::exchange(news, {}));
    } while (length > 0 && queued > 0);
    const bool isToldNow = tellStanding();
    if (requests.wantsProof && !toldWeakness_) {
      listener_.proved();
    } else if (requests.wantsProof && !isToldNow) {
      listener_.stands(toldWeakness_);
    }
  }
}

void InotifyWatch::begin(const std::vector<std::string>& folders) {
  {
    const std::lock_guard lock(foldersMutex_);
    folders_.clear();
    roots_.clear();
    knownDevices_.clear();
    weakness_.reset();
    instance_ = {};
    mounts_ = FileDescriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
    if (!mounts_.isOpen()) {
      weaken(
          fmt::format("The system does not say when a volume is mounted: {}.", std::generic_category().message(errno)));
    }
    instance_ = FileDescriptor(calls_.makeInstance(IN_NONBLOCK | IN_CLOEXEC));
    if (!instance_.isOpen()) {
      weaken(errno == EMFILE ? "The system watches for no more programs (fs.inotify.max_user_instances)."
                             : fmt::format("Nothing can be watched: {}.", std::generic_category().message(errno)));
    }
    for (const std::string& folder : folders) {
      // As a walk names it, which has no other folder to start from either.
      std::error_code error;
      const std::filesystem::path absolute = std::filesystem::absolute(folder, error);
      folders_.addRoot(error ? folder : absolute.native());
      roots_.push_back({error ? folder : absolute.native(), {}});
    }
    News unheeded;
    followWays(unheeded);
  }
  hasToldStanding_ = false;
}

std::size_t InotifyWatch::readEvents(std::vector<char>& buffer, News& news) {
  const ssize_t length = instance_.isOpen() ? read(instance_.get(), buffer.data(), buffer.size()) : 0;
  const int error = length < 0 ? errno : 0;
  const std::lock_guard lock(foldersMutex_);
  if (error != 0 && error != EAGAIN && error != EINTR) {
    weaken(fmt::format("The system told of no more changes: {}.", std::generic_category().message(error)));
    instance_ = {};
  }
  std::string_view bytes(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
  while (true) {
    const std::optional<InotifyRecord> record = takeInotifyRecord(bytes);
    if (!record) {
      break;
    }
    interpret(*record, news);
  }
  if (!bytes.empty()) {
    news.loss = "The system's account of changes broke off.";
  }
  followWays(news);
  return length > 0 ? static_cast<std::size_t>(length) : 0;
}

void InotifyWatch::tell(News news) {
  if (!news.changes.empty()) {
    foldDuplicates(news.changes);
    listener_.changed(std::move(news.changes));
  }
  if (news.loss) {
    listener_.lost(std::move(*news.loss));
  }
}

bool InotifyWatch::tellStanding() {
  std::optional<std::string> weakness;
  {
    const std::lock_guard lock(foldersMutex_);
    weakness = weakness_;
  }
  if (hasToldStanding_ && toldWeakness_ == weakness) {
    return false;
  }
  hasToldStanding_ = true;
  toldWeakness_ = weakness;
  listener_.stands(std::move(weakness));
  return true;
}

void InotifyWatch::interpret(const InotifyRecord& record, News& news) {
  if ((record.mask & IN_Q_OVERFLOW) != 0) {
    news.loss = "More changed at once than the system can tell.";
    markWaysStale();
    return;
  }
  interpretOnWays(record);
  if ((record.mask & IN_UNMOUNT) != 0 && folders_.isUsed(record.watch)) {
    news.loss = "A volume with watched folders was unmounted.";
  }
  if ((record.mask & IN_IGNORED) != 0) {
    folders_.unbind(record.watch);
    return;
  }
  for (WatchedFolders::Folder* folder : folders_.of(record.watch)) {
    interpretBelow(*folder, record, news);
  }
}

void InotifyWatch::interpretBelow(WatchedFolders::Folder& folder, const InotifyRecord& record, News& news) {
  const std::string path = pathOf(folder);
  if (record.name.empty()) {
    if ((record.mask & IN_ATTRIB) != 0) {
      news.changes.push_back({path, {}, false});
      if (folder.first.parent != nullptr) {
        news.changes.push_back({cirrovane::pathOf(*folder.first.parent), folder.first.name, false});
      }
    }
    return;
  }
  if (record.name.starts_with('.')) {
    return;
  }
  news.changes.push_back({path, std::string(record.name), false});
  if ((record.mask & IN_ISDIR) == 0 || isPackageName(record.name)) {
    return;
  }
  const std::string folderPath = cirrovane::pathOf(folder.first, record.name);
  if ((record.mask & (kComes | IN_ATTRIB)) != 0) {
    news.changes.push_back({folderPath, {}, (record.mask & kComes) != 0});
  }
  WatchedFolders::Folder* gone = (record.mask & kGoes) != 0 ? folders_.child(folder, record.name) : nullptr;
  if (gone != nullptr) {
    // Two folders that change places each come and go: the other's coming may have been told before this one went.
    if ((record.mask & IN_MOVED_FROM) != 0 && openByPath(*gone).result != FolderOpening::unreadable) {
      news.changes.push_back({folderPath, {}, true});
    }
    remove(*gone);
  }
}

void InotifyWatch::interpretOnWays(const InotifyRecord& record) {
  if ((record.mask & ~(kIsNoChangeOfWay | IN_ISDIR)) == 0) {
    return;
  }
  for (WatchedRoot& root : roots_) {
    root.isStale = root.isStale || std::ranges::any_of(root.steps, [&](const WayStep& step) {
                     return step.watch == record.watch && (record.name.empty() || record.name == step.name);
                   });
  }
}

void InotifyWatch::followWays(News& news) {
  for (WatchedRoot& root : roots_) {
    if (!root.isStale || !instance_.isOpen()) {
      continue;
    }
    root.isStale = false;
    FolderWay way = followWay(
        root.path, [this](int descriptor, const std::string& path) { return watch(descriptor, path, kWayMask); });
    if (way.weakness) {
      weaken(*way.weakness);
    }
    const std::vector<WayStep> former = std::exchange(root.steps, std::move(way.steps));
    // It may lead to another folder now. Whoever walks over that has it watched anew.
    if (WatchedFolders::Folder* folder = folders_.find(root.path)) {
      remove(*folder);
    }
    for (const WayStep& step : former) {
      release(step.watch);
    }
    if (!news.loss) {
      news.changes.push_back({root.path, {}, true});
    }
  }
}

void InotifyWatch::markWaysStale() {
  for (WatchedRoot& root : roots_) {
    root.isStale = true;
  }
}

bool InotifyWatch::isOnWay(int watch) const {
  return std::ranges::any_of(roots_, [&](const WatchedRoot& root) {
    return std::ranges::find(root.steps, watch, &WayStep::watch) != root.steps.end();
  });
}

void InotifyWatch::remove(WatchedFolders::Folder& folder) {
  for (const int watch : folders_.remove(folder)) {
    release(watch);
  }
}

void InotifyWatch::release(int watch) {
  if (watch >= 0 && !folders_.isUsed(watch) && !isOnWay(watch)) {
    // One that the system ended meanwhile is refused.
    inotify_rm_watch(instance_.get(), watch);
  }
}

int InotifyWatch::watch(int descriptor, const std::string& path, std::uint32_t mask) {
  // By the descriptor, so that the very folder is watched that is listed then.
  const std::string byDescriptor = fmt::format("/proc/self/fd/{}", descriptor);
  int watched = calls_.addWatch(instance_.get(), byDescriptor.c_str(), mask);
  if (watched < 0 && errno == ENOENT) {
    watched = calls_.addWatch(instance_.get(), path.c_str(), mask);
  }
  const int error = errno;
  struct stat status {};
  if (watched >= 0 && fstat(descriptor, &status) == 0) {
    checkFileSystem(status.st_dev, descriptor, path);
  }
  errno = error;
  return watched;
}

void InotifyWatch::checkFileSystem(dev_t device, int descriptor, const std::string& path) {
  if (!knownDevices_.insert(device).second) {
    return;
  }
  struct statfs volume {};
  const auto kind = calls_.fileSystemStatus(descriptor, &volume) == 0 ? untoldFileSystem(volume.f_type) : std::nullopt;
  if (kind) {
    weaken(fmt::format("{} lies on a volume of the kind {}, whose changes the system does not tell.", path, *kind));
  }
}

void InotifyWatch::weaken(const std::string& reason) {
  if (!weakness_) {
    weakness_ = reason;
    wake();
  }
}

}  // namespace cirrovane
