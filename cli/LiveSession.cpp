#include "cli/LiveSession.h"

#include "base/Path.h"
#include "cli/FolderArgument.h"
#include "core/FolderNaming.h"
#include "stores/StoreFile.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace cirrovane {
namespace {

constexpr std::string_view kWatchlistFile = "watchlist.json";

}  // namespace

/// Tells when the watchlist's file may have changed.
class LiveSession::WatchlistFollower final : public FolderWatchListener {
 public:
  WatchlistFollower(Machine& machine, Executor& loop, std::function<void()> changed)
      : fileSystem_(*machine.fileSystem),
        folder_(parentPath(defaultStoragePath(fileSystem_, kWatchlistFile))),
        loop_(loop),
        changed_(std::move(changed)),
        watch_(machine.makeFolderWatch(*this)) {
    if (watch_ != nullptr) {
      watch_->start({folder_});
    }
  }

  void changed(std::vector<FolderChange> changes) override {
    const auto concernsFile = [](const FolderChange& change) {
      return change.item.empty() || change.item == kWatchlistFile;
    };
    if (std::ranges::any_of(changes, concernsFile)) {
      lookSoon();
    }
  }
  void lost(std::string /*reason*/) override { lookSoon(); }
  void stands(std::optional<std::string> /*reasonAgainst*/) override { lookSoon(); }
  void proved() override {}

 private:
  /// The file is read once its folder is watched, so that no change falls in between.
  void lookSoon() {
    loop_.post([this] {
      const auto walk = fileSystem_.enumerate({folder_, /*isDeep=*/false, &watch_->listings()});
      while (walk && walk->next() != nullptr) {
      }
      changed_();
    });
  }

  const FileSystem& fileSystem_;
  const std::string folder_;
  Executor& loop_;
  std::function<void()> changed_;
  std::unique_ptr<FolderWatch> watch_;
};

LiveSession::LiveSession(CommandContext& context, const std::vector<std::string>& folders, LivePace pace)
    : context_(context),
      given_(namedFolders(folders)),
      loop_(*context.machine.monotonicClock),
      alarm_(loop_.makeAlarm()),
      timeout_(loop_.makeAlarm()),
      tick_(loop_.makeAlarm()),
      nextLook_(loop_.makeAlarm()),
      verdict_({*context.machine.fileSystem, *context.machine.clock, &progress_},
               {{loop_, scan_, updates_},
                *context.machine.clock,
                *context.machine.monotonicClock,
                *alarm_,
                [&context](FolderWatchListener& listener) { return context.machine.makeFolderWatch(listener); }},
               pace) {
  if (wakeNotice_.descriptor() >= 0) {
    loop_.watchDescriptor(wakeNotice_.descriptor(), [this] {
      if (wakeNotice_.take()) {
        loop_.ringAlarms();
      }
    });
  }
  subscriptions_.push_back(verdict_.report().afterChange([this](const auto&) { lookSoon(); }));
  subscriptions_.push_back(verdict_.liveness().afterChange([this](const auto&) { lookSoon(); }));
}

LiveSession::~LiveSession() = default;

std::unique_ptr<VouchedYes> LiveSession::waitForCoverage() {
  return std::make_unique<VouchedYes>(makeCoverageKeeper(context_.machine),
                                      VouchingEnvironment{loop_, looks_, *context_.machine.monotonicClock, *nextLook_},
                                      [this] { lookSoon(); });
}

void LiveSession::endOnSignals() {
  quits_.emplace(loop_);
}

void LiveSession::endOnClosedOutput() {
  loop_.watchForClosing(STDOUT_FILENO, [this] { loop_.quit(); });
}

void LiveSession::run(std::optional<std::chrono::nanoseconds> timeout, std::function<bool()> look) {
  look_ = std::move(look);
  if (timeout) {
    awaitEnd(context_.machine.monotonicClock->sinceBoot() + *timeout);
  }
  progressLine_.emplace(progress_, context_.err);
  if (given_.empty()) {
    follower_ = std::make_unique<WatchlistFollower>(context_.machine, loop_, [this] {
      std::vector<WatchFolder> folders = currentFolders();
      if (folders != verdict_.folders()) {
        verdict_.follow(std::move(folders));
      }
    });
  }
  verdict_.follow(currentFolders());
  loop_.run();
  progressLine_.reset();
}

void LiveSession::lookEvery(std::chrono::nanoseconds interval) {
  tick_->set(interval, [this, interval] {
    lookSoon();
    lookEvery(interval);
  });
}

void LiveSession::leave(ExitStatus status) const {
  if (scan_.isBusy() || updates_.isBusy() || looks_.isBusy()) {
    endAtOnce(status);
  }
}

void LiveSession::endAtOnce(ExitStatus status) const {
  std::_Exit(static_cast<int>(statusAfterWriting(status, context_.out, context_.err)));
}

std::vector<WatchFolder> LiveSession::currentFolders() const {
  return given_.empty() ? context_.openWatchlist()->folders() : given_;
}

void LiveSession::awaitEnd(std::chrono::nanoseconds end) {
  const std::chrono::nanoseconds left = end - context_.machine.monotonicClock->sinceBoot();
  timeout_->set(std::max(left, std::chrono::nanoseconds(0)), [this, end] {
    if (context_.machine.monotonicClock->sinceBoot() < end) {
      awaitEnd(end);
      return;
    }
    isTimeUp_ = true;
    look();
  });
}

void LiveSession::lookSoon() {
  // Once for all that changes at one stroke.
  if (!std::exchange(isLookPosted_, true)) {
    loop_.post([this] {
      isLookPosted_ = false;
      look();
    });
  }
}

void LiveSession::look() {
  if (verdict_.report().value()) {
    progressLine_.reset();
  }
  if (look_()) {
    loop_.quit();
  }
}

}  // namespace cirrovane
