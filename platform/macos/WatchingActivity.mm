#include "platform/macos/WatchingActivity.h"

#import <Foundation/Foundation.h>

namespace cirrovane {

struct WatchingActivity::Token {
  id<NSObject> activity;
};

WatchingActivity::WatchingActivity() {
  @autoreleasepool {
    token_ = std::make_unique<Token>();
    token_->activity =
        [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                     reason:@"Watching whether files have reached iCloud Drive"];
  }
}

WatchingActivity::~WatchingActivity() {
  @autoreleasepool {
    [NSProcessInfo.processInfo endActivity:token_->activity];
  }
}

}  // namespace cirrovane
