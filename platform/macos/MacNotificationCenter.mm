#include "platform/macos/MacNotificationCenter.h"

#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/FrameworkNumbers.h"

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>
#import <dispatch/dispatch.h>
#include <string>
#include <utility>

/// Lets a notification show its banner while the application is in front, and hears of clicks.
@interface CirrovaneNotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
/// Called on the main thread; may be nil.
@property(copy, nullable) dispatch_block_t activated;
@end

@implementation CirrovaneNotificationDelegate

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
  completionHandler(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList |
                    UNNotificationPresentationOptionSound);
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
  const bool isClick = [response.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier];
  const dispatch_block_t activated = self.activated;
  if (isClick && activated != nil) {
    dispatch_async(dispatch_get_main_queue(), activated);
  }
  completionHandler();
}

@end

namespace cirrovane {
namespace {

static_assert(UNAuthorizationStatusNotDetermined == 0 && UNAuthorizationStatusDenied == 1 &&
              UNAuthorizationStatusAuthorized == 2);

/// The centre raises an exception for a process that the system does not know as an application.
UNUserNotificationCenter* systemCenter(const Bundle& bundle) {
  if (!isApplicationBundle(bundle) || NSBundle.mainBundle.bundleIdentifier == nil) {
    return nil;
  }
  @try {
    return UNUserNotificationCenter.currentNotificationCenter;
  } @catch (NSException* exception) {
    return nil;
  }
}

/// The centre answers on any thread.
void answerOnMainThread(std::function<void()> then) {
  dispatch_async(dispatch_get_main_queue(), ^{
    then();
  });
}

}  // namespace

struct MacNotificationCenter::Center {
  /// nil outside of an application bundle.
  UNUserNotificationCenter* system;
  /// The centre itself does not keep its delegate.
  CirrovaneNotificationDelegate* delegate;
};

MacNotificationCenter::MacNotificationCenter(const Bundle& bundle) : center_(std::make_unique<Center>()) {
  @autoreleasepool {
    center_->system = systemCenter(bundle);
    center_->delegate = [[CirrovaneNotificationDelegate alloc] init];
    center_->system.delegate = center_->delegate;
  }
}

MacNotificationCenter::~MacNotificationCenter() {
  center_->system.delegate = nil;
  center_->delegate.activated = nil;
}

void MacNotificationCenter::onActivated(std::function<void()> activated) {
  center_->delegate.activated = ^{
    activated();
  };
}

void MacNotificationCenter::readAuthorization(std::function<void(NotificationAuthorization)> then) {
  if (center_->system == nil) {
    answerOnMainThread([then = std::move(then)] { then(NotificationAuthorization::denied); });
    return;
  }
  @autoreleasepool {
    [center_->system getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
      const NotificationAuthorization answer = notificationAuthorizationOf(settings.authorizationStatus);
      answerOnMainThread([then, answer] { then(answer); });
    }];
  }
}

void MacNotificationCenter::requestAuthorization(std::function<void()> then) {
  if (center_->system == nil) {
    answerOnMainThread(std::move(then));
    return;
  }
  @autoreleasepool {
    [center_->system requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                                   completionHandler:^(BOOL, NSError* _Nullable) {
                                     answerOnMainThread(then);
                                   }];
  }
}

void MacNotificationCenter::add(const Notification& notification, std::function<void()> then) {
  @autoreleasepool {
    NSString* identifier = textOf(notification.identifier);
    NSString* title = textOf(notification.title);
    NSString* body = textOf(notification.body);
    if (center_->system == nil || identifier == nil || title == nil || body == nil) {
      answerOnMainThread(std::move(then));
      return;
    }
    UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
    content.title = title;
    content.body = body;
    content.sound = UNNotificationSound.defaultSound;
    // Without a trigger it is delivered at once.
    UNNotificationRequest* request = [UNNotificationRequest requestWithIdentifier:identifier
                                                                          content:content
                                                                          trigger:nil];
    [center_->system addNotificationRequest:request
                      withCompletionHandler:^(NSError* _Nullable) {
                        answerOnMainThread(then);
                      }];
  }
}

std::optional<std::string> MacNotificationCenter::settingsAddress() const {
  return "x-apple.systempreferences:com.apple.Notifications-Settings.extension?id=com.quillmere.Cirrovane";
}

}  // namespace cirrovane
