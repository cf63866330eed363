#pragma once

#pragma clang system_header

#include "../Foundation/Foundation.h"

SDK_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
  SMAppServiceStatusNotRegistered = 0,
  SMAppServiceStatusEnabled = 1,
  SMAppServiceStatusRequiresApproval = 2,
  SMAppServiceStatusNotFound = 3,
};

SDK_SINCE(13.0)
@interface SMAppService : NSObject
@property(class, readonly) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError* _Nullable* _Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError* _Nullable* _Nullable)error;
+ (void)openSystemSettingsLoginItems;
@end

SDK_NONNULL_END
