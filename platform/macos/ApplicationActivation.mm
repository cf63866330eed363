#include "platform/macos/ApplicationActivation.h"

#import <AppKit/AppKit.h>

namespace cirrovane {

void activateApplication() {
  @autoreleasepool {
    // Not its successor of macOS 14, which the active application may decline.
    [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
  }
}

}  // namespace cirrovane
