#include "platform/macos/DispatchQueue.h"

#include "platform/macos/FoundationText.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#include <cstddef>
#include <cstdint>
#include <dispatch/dispatch.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

/// How long the system may gather changes before it tells of them. The first of a burst is told at once.
constexpr CFTimeInterval kLatency = 0.05;

static_assert(stream_flag::mustScanSubDirs == kFSEventStreamEventFlagMustScanSubDirs);
static_assert(stream_flag::userDropped == kFSEventStreamEventFlagUserDropped);
static_assert(stream_flag::kernelDropped == kFSEventStreamEventFlagKernelDropped);
static_assert(stream_flag::eventIdsWrapped == kFSEventStreamEventFlagEventIdsWrapped);
static_assert(stream_flag::historyDone == kFSEventStreamEventFlagHistoryDone);
static_assert(stream_flag::rootChanged == kFSEventStreamEventFlagRootChanged);
static_assert(stream_flag::mount == kFSEventStreamEventFlagMount);
static_assert(stream_flag::unmount == kFSEventStreamEventFlagUnmount);
static_assert(stream_flag::itemCreated == kFSEventStreamEventFlagItemCreated);
static_assert(stream_flag::itemRemoved == kFSEventStreamEventFlagItemRemoved);
static_assert(stream_flag::itemRenamed == kFSEventStreamEventFlagItemRenamed);
static_assert(stream_flag::itemIsDir == kFSEventStreamEventFlagItemIsDir);

using Tell = std::function<void(std::vector<StreamEvent>)>;

void arrived(ConstFSEventStreamRef /*stream*/, void* _Nullable info, std::size_t count, void* paths,
             const FSEventStreamEventFlags* flags, const FSEventStreamEventId* /*ids*/) {
  const auto* const* texts = static_cast<const char* const*>(paths);
  std::vector<StreamEvent> events;
  events.reserve(count);
  for (std::size_t index = 0; index < count; ++index) {
    events.push_back({texts[index], flags[index]});
  }
  (*static_cast<const Tell*>(info))(std::move(events));
}

class SystemEventStream final : public EventStream {
 public:
  /// Takes a stream over that tells by `tell` and has its queue already.
  SystemEventStream(std::unique_ptr<Tell> tell, FSEventStreamRef _Nonnull stream)
      : tell_(std::move(tell)), stream_(stream), isStarted_(FSEventStreamStart(stream) != 0) {}
  ~SystemEventStream() override {
    if (isStarted_) {
      FSEventStreamStop(stream_);
    }
    FSEventStreamInvalidate(stream_);
    FSEventStreamRelease(stream_);
  }
  SystemEventStream(const SystemEventStream&) = delete;
  SystemEventStream& operator=(const SystemEventStream&) = delete;

  bool isStarted() const { return isStarted_; }
  void flush() override { FSEventStreamFlushAsync(stream_); }

 private:
  const std::unique_ptr<Tell> tell_;
  FSEventStreamRef _Nonnull stream_;
  bool isStarted_;
};

}  // namespace

struct DispatchQueue::Queue {
  dispatch_queue_t _Nonnull system;
};

DispatchQueue::DispatchQueue()
    : queue_(std::make_unique<Queue>(
          Queue{dispatch_queue_create("com.quillmere.Cirrovane.watch", DISPATCH_QUEUE_SERIAL)})) {}

DispatchQueue::~DispatchQueue() = default;

void DispatchQueue::post(std::function<void()> task) {
  dispatch_async(queue_->system, ^{
    @autoreleasepool {
      task();
    }
  });
}

void DispatchQueue::postAfter(std::chrono::seconds delay, std::function<void()> task) {
  const auto nanoseconds = static_cast<std::int64_t>(delay / std::chrono::nanoseconds(1));
  // By the clock that stands still while the machine sleeps.
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, nanoseconds), queue_->system, ^{
    @autoreleasepool {
      task();
    }
  });
}

void DispatchQueue::runAndWait(std::function<void()> task) {
  dispatch_sync(queue_->system, ^{
    task();
  });
}

std::unique_ptr<EventStream> DispatchQueue::makeStream(const std::vector<std::string>& paths, Tell tell) {
  @autoreleasepool {
    NSMutableArray<NSString*>* texts = [NSMutableArray array];
    for (const std::string& path : paths) {
      // A path that is no text leads to nothing on a Mac's disk.
      if (NSString* text = textOf(path)) {
        [texts addObject:text];
      }
    }
    auto told = std::make_unique<Tell>(std::move(tell));
    FSEventStreamContext context = {0, told.get(), nullptr, nullptr, nullptr};
    FSEventStreamRef system = FSEventStreamCreate(
        kCFAllocatorDefault, arrived, &context, (__bridge CFArrayRef)texts, kFSEventStreamEventIdSinceNow, kLatency,
        kFSEventStreamCreateFlagFileEvents | kFSEventStreamCreateFlagWatchRoot | kFSEventStreamCreateFlagNoDefer);
    if (system == nullptr) {
      return nullptr;
    }
    FSEventStreamSetDispatchQueue(system, queue_->system);
    auto stream = std::make_unique<SystemEventStream>(std::move(told), system);
    return stream->isStarted() ? std::move(stream) : nullptr;
  }
}

}  // namespace cirrovane
