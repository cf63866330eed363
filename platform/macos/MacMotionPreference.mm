#include "platform/macos/MacMotionPreference.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace cirrovane {

bool MacMotionPreference::isReduced() const {
  @autoreleasepool {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
  }
}

void MacMotionPreference::onChange(std::function<void()> changed) {
  notice_.reset();
  if (changed) {
    notice_.emplace(WorkspaceNotice::Event::motionPreferenceChanged, std::move(changed));
  }
}

}  // namespace cirrovane
