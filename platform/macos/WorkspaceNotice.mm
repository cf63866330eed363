#include "platform/macos/WorkspaceNotice.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <utility>

namespace cirrovane {
namespace {

NSNotificationName nameOf(WorkspaceNotice::Event event) {
  switch (event) {
    case WorkspaceNotice::Event::motionPreferenceChanged:
      return NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;
    case WorkspaceNotice::Event::machineWoke:
      return NSWorkspaceDidWakeNotification;
  }
}

}  // namespace

struct WorkspaceNotice::Observation {
  // By value: a block would keep no more of a reference than the reference.
  Observation(NSNotificationName name, std::function<void()> then)
      : token([NSWorkspace.sharedWorkspace.notificationCenter addObserverForName:name
                                                                          object:nil
                                                                           queue:NSOperationQueue.mainQueue
                                                                      usingBlock:^(NSNotification*) {
                                                                        then();
                                                                      }]) {}
  ~Observation() { [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:token]; }
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;

  id<NSObject> token;
};

WorkspaceNotice::WorkspaceNotice(Event event, std::function<void()> then) {
  @autoreleasepool {
    observation_ = std::make_unique<Observation>(nameOf(event), std::move(then));
  }
}

WorkspaceNotice::~WorkspaceNotice() = default;

}  // namespace cirrovane
