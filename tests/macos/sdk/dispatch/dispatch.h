#pragma once

#pragma clang system_header

#include "../declarations.h"

SDK_NONNULL_BEGIN

@protocol OS_dispatch_queue
@end
typedef id<OS_dispatch_queue> dispatch_queue_t;
typedef void (^dispatch_block_t)(void);

SDK_EXTERN dispatch_queue_t dispatch_get_main_queue(void);
SDK_EXTERN void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
SDK_EXTERN void dispatch_sync(dispatch_queue_t queue, __attribute__((noescape)) dispatch_block_t block);

SDK_NONNULL_END
