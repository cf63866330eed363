#include "platform/macos/MacMotionPreference.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

namespace cirrovane {

/// Hears of changes for as long as it lives.
struct MacMotionPreference::Observation {
  // By value: a block would keep no more of a reference than the reference.
  explicit Observation(std::function<void()> changed)
      : token([NSWorkspace.sharedWorkspace.notificationCenter
            addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                        object:nil
                         queue:NSOperationQueue.mainQueue
                    usingBlock:^(NSNotification*) {
                      changed();
                    }]) {}
  ~Observation() { [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:token]; }
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;

  id<NSObject> token;
};

MacMotionPreference::MacMotionPreference() = default;

MacMotionPreference::~MacMotionPreference() = default;

bool MacMotionPreference::isReduced() const {
  @autoreleasepool {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
  }
}

void MacMotionPreference::onChange(std::function<void()> changed) {
  @autoreleasepool {
    observation_ = changed ? std::make_unique<Observation>(changed) : nullptr;
  }
}

}  // namespace cirrovane
