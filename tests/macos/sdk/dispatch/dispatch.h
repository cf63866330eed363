#pragma once

#pragma clang system_header

#include "../declarations.h"

SDK_NONNULL_BEGIN

@protocol OS_dispatch_queue
@end
typedef id<OS_dispatch_queue> dispatch_queue_t;
typedef void (^dispatch_block_t)(void);

@protocol OS_dispatch_queue_attr
@end
typedef id<OS_dispatch_queue_attr> dispatch_queue_attr_t;
#define DISPATCH_QUEUE_SERIAL nullptr

typedef uint64_t dispatch_time_t;
enum : dispatch_time_t { DISPATCH_TIME_NOW = 0ULL };
#define NSEC_PER_SEC 1000000000ULL
SDK_EXTERN dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);

SDK_EXTERN dispatch_queue_t dispatch_queue_create(const char* _Nullable label, dispatch_queue_attr_t _Nullable attr);
SDK_EXTERN void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);

SDK_EXTERN dispatch_queue_t dispatch_get_main_queue(void);
SDK_EXTERN void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
SDK_EXTERN void dispatch_sync(dispatch_queue_t queue, __attribute__((noescape)) dispatch_block_t block);

SDK_NONNULL_END
