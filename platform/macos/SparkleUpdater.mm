#include "platform/macos/StandardUpdater.h"

#import <Foundation/Foundation.h>
#import <Sparkle/Sparkle.h>

namespace cirrovane {
namespace {

/// Sparkle with its own windows.
class SparkleUpdater final : public Updater {
 public:
  void checkForUpdates() override {
    @autoreleasepool {
      [controller_ checkForUpdates:nil];
    }
  }

 private:
  SPUStandardUpdaterController* controller_ = [[SPUStandardUpdaterController alloc] initWithStartingUpdater:YES
                                                                                            updaterDelegate:nil
                                                                                         userDriverDelegate:nil];
};

}  // namespace

std::unique_ptr<Updater> makeStandardUpdater() {
  @autoreleasepool {
    return std::make_unique<SparkleUpdater>();
  }
}

}  // namespace cirrovane
