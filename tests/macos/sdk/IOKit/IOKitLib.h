#pragma once

#pragma clang system_header

#include "../CoreFoundation/CoreFoundation.h"
#include "../declarations.h"

#include <dispatch/dispatch.h>

SDK_NONNULL_BEGIN

typedef unsigned int mach_port_t;
typedef mach_port_t io_object_t;
typedef io_object_t io_connect_t;
typedef io_object_t io_service_t;
typedef int kern_return_t;
typedef kern_return_t IOReturn;
#define MACH_PORT_NULL 0
#define kIOReturnSuccess 0

typedef struct IONotificationPort* IONotificationPortRef;
typedef void (*IOServiceInterestCallback)(void* _Null_unspecified refcon, io_service_t service, uint32_t messageType,
                                          void* _Null_unspecified messageArgument);

SDK_EXTERN void IONotificationPortDestroy(IONotificationPortRef notify);
SDK_EXTERN void IONotificationPortSetDispatchQueue(IONotificationPortRef notify, dispatch_queue_t _Nullable queue)
    SDK_SINCE(10.6);
SDK_EXTERN kern_return_t IOServiceClose(io_connect_t connect);

SDK_NONNULL_END
