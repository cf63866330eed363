#include "platform/macos/plain/StreamedWatch.h"

#include "base/FileDescriptor.h"
#include "base/Path.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace cirrovane {
namespace {

using std::chrono::seconds;

/// How soon a cookie has to come back.
constexpr seconds kPatience{5};
/// How long the stream is believed in without one.
constexpr seconds kLongestFaith{300};
/// When a changed item is read again: its cloud state follows its content.
constexpr std::array kLaterReadings = {seconds(1), seconds(5), seconds(30)};

constexpr std::uint32_t kDrops =
    stream_flag::mustScanSubDirs | stream_flag::userDropped | stream_flag::kernelDropped | stream_flag::eventIdsWrapped;
constexpr std::uint32_t kMoves = stream_flag::rootChanged | stream_flag::mount | stream_flag::unmount;
constexpr std::uint32_t kComes = stream_flag::itemCreated | stream_flag::itemRenamed;
constexpr std::uint32_t kGoes = stream_flag::itemRemoved | stream_flag::itemRenamed;

constexpr const char* kNothingWatched = "No folder is watched yet.";

/// A cookie is an empty file: its coming is all that is wanted.
bool writeCookie(const std::string& path) {
  const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  return file.isOpen();
}

bool isBelow(std::string_view folder, std::string_view path) {
  return path.size() > folder.size() && path.starts_with(folder) && (folder == "/" || path[folder.size()] == '/');
}

}  // namespace

/// All that the queue works on.
class StreamedWatch::State final : public std::enable_shared_from_this<State> {
 public:
  State(FolderWatchListener& listener, StreamSystem system, std::shared_ptr<SerialQueue> queue, std::string ownFolder)
      : listener_(listener),
        system_(std::move(system)),
        queue_(std::move(queue)),
        ownFolder_(std::move(ownFolder)),
        weakness_(kNothingWatched) {}

  void start(const std::vector<std::string>& folders) {
    end();
    for (const std::string& folder : folders) {
      folders_.push_back({folder, system_.withoutLinks(folder)});
    }
    weakness_.reset();
    hasStood_ = false;
    follow();
    bake(/*isForProof=*/false);
    bakeEveryFewMinutes();
  }

  /// Ends all that is under way. Nothing is told until a new start.
  void end() {
    ++generation_;
    endStream();
    eatAll();
    folders_.clear();
    weakness_ = kNothingWatched;
  }

  void prove() {
    if (weakness_) {
      listener_.stands(weakness_);
      return;
    }
    followMovedFolders();
    bake(/*isForProof=*/true);
  }

  void machineWoke() {
    if (weakness_) {
      return;
    }
    // What was out when the machine fell asleep had no fair time to come back.
    const bool isForProof = eatAll();
    listener_.lost("The Mac slept.");
    followMovedFolders();
    bake(isForProof);
  }

 private:
  /// A file of ours that is to come back by the stream.
  struct Cookie {
    std::string path;
    bool isForProof = false;
  };
  using Cookies = std::vector<Cookie>;

  /// Runs the task later, unless the watch was ended or started anew meanwhile.
  void later(seconds delay, std::function<void(State&)> task) {
    queue_->postAfter(delay, [weak = weak_from_this(), generation = generation_, task = std::move(task)] {
      const std::shared_ptr<State> state = weak.lock();
      if (state && state->generation_ == generation) {
        task(*state);
      }
    });
  }

  void bakeEveryFewMinutes() {
    later(kLongestFaith, [](State& state) {
      if (!state.weakness_) {
        state.followMovedFolders();
        state.bake(/*isForProof=*/false);
        state.bakeEveryFewMinutes();
      }
    });
  }

  /// Has the stream account for the folders where they are now.
  void follow() {
    endStream();
    const bool hasCookies = !cookies_.empty();
    const bool isForProof = eatAll();
    std::vector<std::string> paths = {system_.withoutLinks(ownFolder_)};
    realOwnFolder_ = paths.front();
    for (const FolderAlias& folder : folders_) {
      paths.push_back(folder.real);
    }
    stream_ = system_.makeStream(paths, [weak = weak_from_this(), stream = streams_](std::vector<StreamEvent> events) {
      const std::shared_ptr<State> state = weak.lock();
      if (state && state->streams_ == stream) {
        state->take(std::move(events));
      }
    });
    if (!stream_) {
      weaken("The system does not tell of changes in the watched folders.");
    } else if (hasCookies) {
      // Those that were out will not come back by another stream.
      bake(isForProof);
    }
  }

  /// A stream may be in the middle of telling: it is destroyed by a task of its own.
  void endStream() {
    ++streams_;
    if (stream_) {
      queue_->post([former = std::shared_ptr<EventStream>(std::move(stream_))] {});
    }
  }

  /// A watched folder that is reached by a link may be another one now, which the stream does not say.
  void followMovedFolders() {
    bool hasMoved = false;
    for (FolderAlias& folder : folders_) {
      std::string real = system_.withoutLinks(folder.asked);
      hasMoved = hasMoved || real != folder.real;
      folder.real = std::move(real);
    }
    if (hasMoved) {
      follow();
      listener_.lost("A watched folder moved.");
    }
  }

  void bake(bool isForProof) {
    if (weakness_) {
      return;
    }
    Cookie cookie{realOwnFolder_ + "/.watch-" + std::to_string(getpid()) + "-" + std::to_string(++baked_), isForProof};
    if (!writeCookie(cookie.path)) {
      weaken(std::string("Whether changes are told cannot be tried: ") + std::strerror(errno) + ".");
      return;
    }
    const std::string path = cookie.path;
    cookies_.push_back(std::move(cookie));
    stream_->flush();
    later(kPatience, [path](State& state) {
      if (std::ranges::find(state.cookies_, path, &Cookie::path) != state.cookies_.end()) {
        state.weaken("The system no longer tells of changes.");
      }
    });
  }

  void eat(Cookies::iterator cookie) {
    unlink(cookie->path.c_str());
    cookies_.erase(cookie);
  }

  /// Whether one of them was for a proof.
  bool eatAll() {
    const bool isForProof = std::ranges::any_of(cookies_, &Cookie::isForProof);
    while (!cookies_.empty()) {
      eat(cookies_.begin());
    }
    return isForProof;
  }

  /// The watch is not to be believed in until it is started anew.
  void weaken(const std::string& reason) {
    end();
    weakness_ = reason;
    listener_.stands(weakness_);
  }

  void take(std::vector<StreamEvent> events) {
    std::vector<FolderChange> changes;
    std::vector<std::string> returned;
    const char* loss = nullptr;
    bool mayHaveMoved = false;
    for (const StreamEvent& event : events) {
      if ((event.flags & kMoves) != 0) {
        loss = (event.flags & stream_flag::rootChanged) != 0 ? "A watched folder moved."
                                                             : "A volume was mounted or unmounted.";
        mayHaveMoved = true;
      } else if ((event.flags & kDrops) != 0) {
        loss = "More changed at once than the system can tell.";
      } else if ((event.flags & stream_flag::historyDone) == 0) {
        returned.push_back(event.path);
        addChanges({std::string(withoutTrailingSlash(event.path)), event.flags}, changes);
      }
    }
    tell(std::move(changes), loss);
    for (const std::string& path : returned) {
      takeCookie(path);
    }
    if (mayHaveMoved) {
      for (FolderAlias& folder : folders_) {
        folder.real = system_.withoutLinks(folder.asked);
      }
      follow();
    }
  }

  void tell(std::vector<FolderChange> changes, const char* loss) {
    const auto key = [](const FolderChange& change) { return std::tie(change.folder, change.item, change.isDeep); };
    std::ranges::sort(changes, {}, key);
    const auto rest = std::ranges::unique(changes);
    changes.erase(rest.begin(), rest.end());
    if (!changes.empty()) {
      listener_.changed(std::move(changes));
    }
    if (loss != nullptr) {
      listener_.lost(loss);
    }
  }

  /// What an event means for each watched folder that it lies in.
  void addChanges(const StreamEvent& event, std::vector<FolderChange>& changes) const {
    const bool isFolder = (event.flags & stream_flag::itemIsDir) != 0;
    for (const FolderAlias& folder : folders_) {
      if (event.path == folder.real) {
        changes.push_back({folder.asked, {}, true});
        continue;
      }
      if (!isBelow(folder.real, event.path) || isBlind(folder, event.path)) {
        continue;
      }
      const std::string path = folder.asAsked(event.path);
      const std::string_view parent = parentPath(path);
      changes.push_back({std::string(parent.empty() ? "/" : parent), std::string(lastPathComponent(path)), false});
      if (isFolder && (event.flags & kComes) != 0) {
        changes.push_back({path, {}, true});
      } else if (isFolder && (event.flags & kGoes) == 0) {
        changes.push_back({path, {}, false});
      }
    }
  }

  /// Whether a walk would not show the item: hidden, or within something hidden or a package.
  bool isBlind(const FolderAlias& folder, const std::string& path) const {
    std::size_t begin = folder.real == "/" ? 1 : folder.real.size() + 1;
    while (begin < path.size()) {
      const std::size_t end = std::min(path.find('/', begin), path.size());
      const std::string_view name = std::string_view(path).substr(begin, end - begin);
      const bool isLast = end == path.size();
      if (name.starts_with('.') ||
          (!isLast && name.find('.') != std::string_view::npos && system_.isPackage(path.substr(0, end)))) {
        return true;
      }
      begin = end + 1;
    }
    return false;
  }

  void takeCookie(const std::string& path) {
    const auto cookie = std::ranges::find(cookies_, path, &Cookie::path);
    if (cookie == cookies_.end()) {
      return;
    }
    const bool isForProof = cookie->isForProof;
    eat(cookie);
    if (!hasStood_) {
      hasStood_ = true;
      listener_.stands(std::nullopt);
    }
    if (isForProof) {
      listener_.proved();
    }
  }

  FolderWatchListener& listener_;
  const StreamSystem system_;
  const std::shared_ptr<SerialQueue> queue_;
  const std::string ownFolder_;
  std::string realOwnFolder_;
  std::vector<FolderAlias> folders_;
  std::unique_ptr<EventStream> stream_;
  Cookies cookies_;
  /// Why changes may go unnoticed; absent when none can.
  std::optional<std::string> weakness_;
  bool hasStood_ = false;
  /// How often the watch was ended or started.
  std::uint64_t generation_ = 0;
  std::uint64_t streams_ = 0;
  std::uint64_t baked_ = 0;
};

StreamedWatch::StreamedWatch(FolderWatchListener& listener, StreamSystem system, std::shared_ptr<SerialQueue> queue,
                             std::string ownFolder)
    : queue_(std::move(queue)),
      state_(std::make_shared<State>(listener, std::move(system), queue_, std::move(ownFolder))) {}

StreamedWatch::~StreamedWatch() {
  queue_->runAndWait([this] { state_->end(); });
}

void StreamedWatch::start(const std::vector<std::string>& folders) {
  queue_->post([state = state_, folders] { state->start(folders); });
}

void StreamedWatch::prove() {
  queue_->post([state = state_] { state->prove(); });
}

std::vector<std::chrono::seconds> StreamedWatch::laterReadings() const {
  return {kLaterReadings.begin(), kLaterReadings.end()};
}

std::function<void()> StreamedWatch::wakeNotice() const {
  return [queue = queue_, weak = std::weak_ptr(state_)] {
    queue->post([weak] {
      if (const std::shared_ptr<State> state = weak.lock()) {
        state->machineWoke();
      }
    });
  };
}

}  // namespace cirrovane
