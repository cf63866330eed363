#pragma once

#pragma clang system_header

#include "../Foundation/Foundation.h"

SDK_NONNULL_BEGIN

@protocol SPUUpdaterDelegate;
@protocol SPUStandardUserDriverDelegate;

@interface SPUStandardUpdaterController : NSObject
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(nullable id<SPUUpdaterDelegate>)updaterDelegate
                     userDriverDelegate:(nullable id<SPUStandardUserDriverDelegate>)userDriverDelegate;
- (void)checkForUpdates:(nullable id)sender;
@end

SDK_NONNULL_END
