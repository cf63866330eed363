#include "platform/macos/SystemQuits.h"

#include "platform/CommandRunner.h"
#include "platform/macos/plain/SystemQuit.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#include <cstdint>
#include <cstdlib>
#include <dispatch/dispatch.h>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace cirrovane {
namespace {

static_assert(fourCharacterCode("logo") == kAELogOut && fourCharacterCode("rlgo") == kAEReallyLogOut &&
              fourCharacterCode("rest") == kAERestart && fourCharacterCode("rrst") == kAEShowRestartDialog &&
              fourCharacterCode("shut") == kAEShutDown && fourCharacterCode("rsdn") == kAEShowShutdownDialog);

/// Whoever hears of quits at the time.
struct QuitHearer {
  std::mutex mutex;
  PowerSystem::QuitAsked ask;
  /// Counts those that have heard.
  int number = 0;
};

/// What the event under way gives as the reason to quit; absent where none is under way.
std::optional<std::uint32_t> quitReason() {
  NSAppleEventDescriptor* event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
  NSAppleEventDescriptor* reason = [event attributeDescriptorForKeyword:kAEQuitReason];
  return reason != nil ? std::optional<std::uint32_t>(reason.enumCodeValue) : std::nullopt;
}

/// Ends the application in the system's favour.
void acceptQuit() {
  dispatch_async(dispatch_get_main_queue(), ^{
    [NSApplication.sharedApplication replyToApplicationShouldTerminate:YES];
  });
}

bool asksToWait(QuitHearer& hearer) {
  const std::lock_guard lock(hearer.mutex);
  return hearer.ask && hearer.ask(acceptQuit);
}

}  // namespace
}  // namespace cirrovane

/// Stands before the toolkit's delegate.
@interface CirrovaneApplicationDelegate : NSObject <NSApplicationDelegate>
@property(nonatomic, strong, nullable) id<NSApplicationDelegate> toolkits;
@end

@implementation CirrovaneApplicationDelegate {
 @public
  std::shared_ptr<cirrovane::QuitHearer> hearer;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
  if (cirrovane::isSystemQuit(cirrovane::quitReason()) && cirrovane::asksToWait(*hearer)) {
    return NSTerminateLater;
  }
  id<NSApplicationDelegate> toolkits = self.toolkits;
  return [toolkits respondsToSelector:@selector(applicationShouldTerminate:)]
             ? [toolkits applicationShouldTerminate:sender]
             : NSTerminateNow;
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  // As at the end of main(): to take the threads down would be to wait for a probe that may never come back.
  cirrovane::endLimitedCommands();
  std::_Exit(EXIT_SUCCESS);
}

- (BOOL)respondsToSelector:(SEL)selector {
  return [super respondsToSelector:selector] || [self.toolkits respondsToSelector:selector];
}

- (nullable id)forwardingTargetForSelector:(SEL)selector {
  return self.toolkits;
}

@end

namespace cirrovane {

struct SystemQuits::Proxy {
  CirrovaneApplicationDelegate* delegate;
};

class SystemQuits::Hearing final : public PowerNotices {
 public:
  Hearing(std::shared_ptr<QuitHearer> hearer, PowerSystem::QuitAsked ask) : hearer_(std::move(hearer)) {
    const std::lock_guard lock(hearer_->mutex);
    hearer_->ask = std::move(ask);
    number_ = ++hearer_->number;
  }
  ~Hearing() override {
    const std::lock_guard lock(hearer_->mutex);
    if (number_ == hearer_->number) {
      hearer_->ask = nullptr;
    }
  }
  Hearing(const Hearing&) = delete;
  Hearing& operator=(const Hearing&) = delete;

 private:
  const std::shared_ptr<QuitHearer> hearer_;
  int number_ = 0;
};

SystemQuits::SystemQuits() : proxy_(std::make_unique<Proxy>()) {
  @autoreleasepool {
    proxy_->delegate = [[CirrovaneApplicationDelegate alloc] init];
    proxy_->delegate->hearer = std::make_shared<QuitHearer>();
    proxy_->delegate.toolkits = NSApplication.sharedApplication.delegate;
    NSApplication.sharedApplication.delegate = proxy_->delegate;
  }
}

SystemQuits::~SystemQuits() {
  @autoreleasepool {
    NSApplication.sharedApplication.delegate = proxy_->delegate.toolkits;
  }
}

std::unique_ptr<PowerNotices> SystemQuits::hear(PowerSystem::QuitAsked ask) const {
  return std::make_unique<Hearing>(proxy_->delegate->hearer, std::move(ask));
}

}  // namespace cirrovane
