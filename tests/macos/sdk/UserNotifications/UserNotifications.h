#pragma once

#pragma clang system_header

#include "../Foundation/Foundation.h"

SDK_NONNULL_BEGIN

@class UNNotification, UNNotificationRequest, UNNotificationResponse, UNNotificationSettings, UNNotificationTrigger,
    UNUserNotificationCenter;

typedef NS_ENUM(NSInteger, UNAuthorizationStatus) {
  UNAuthorizationStatusNotDetermined = 0,
  UNAuthorizationStatusDenied = 1,
  UNAuthorizationStatusAuthorized = 2,
  UNAuthorizationStatusProvisional = 3,
};

typedef NS_OPTIONS(NSUInteger, UNAuthorizationOptions) {
  UNAuthorizationOptionSound = 1UL << 1,
  UNAuthorizationOptionAlert = 1UL << 2,
};

typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
  UNNotificationPresentationOptionSound = 1UL << 1,
  UNNotificationPresentationOptionList SDK_SINCE(11.0) = 1UL << 3,
  UNNotificationPresentationOptionBanner SDK_SINCE(11.0) = 1UL << 4,
};

SDK_EXTERN NSString* const UNNotificationDefaultActionIdentifier SDK_SINCE(10.14);

SDK_SINCE(10.14)
@interface UNNotificationSound : NSObject
@property(class, nonatomic, copy, readonly) UNNotificationSound* defaultSound;
@end

SDK_SINCE(10.14)
@interface UNNotificationContent : NSObject
@end

SDK_SINCE(10.14)
@interface UNMutableNotificationContent : UNNotificationContent
@property(nonatomic, copy) NSString* title;
@property(nonatomic, copy) NSString* body;
@property(nonatomic, copy, nullable) UNNotificationSound* sound;
@end

SDK_SINCE(10.14)
@interface UNNotificationRequest : NSObject
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@end

SDK_SINCE(10.14)
@interface UNNotificationResponse : NSObject
@property(nonatomic, readonly, copy) NSString* actionIdentifier;
@end

SDK_SINCE(10.14)
@interface UNNotificationSettings : NSObject
@property(nonatomic, readonly) UNAuthorizationStatus authorizationStatus;
@end

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler SDK_SINCE(10.14);
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler SDK_SINCE(10.14);
@end

SDK_SINCE(10.14)
@interface UNUserNotificationCenter : NSObject
@property(class, nonatomic, readonly) UNUserNotificationCenter* currentNotificationCenter;
@property(nonatomic, weak, nullable) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError* _Nullable error))completionHandler;
- (void)getNotificationSettingsWithCompletionHandler:(void (^)(UNNotificationSettings* settings))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(void (^_Nullable)(NSError* _Nullable error))completionHandler;
@end

SDK_NONNULL_END
