#pragma once

#pragma clang system_header

#include "../IOKitLib.h"

SDK_NONNULL_BEGIN

typedef uint32_t IOPMAssertionID;
typedef uint32_t IOPMAssertionLevel;
enum : IOPMAssertionLevel { kIOPMAssertionLevelOn = 255 };
#define kIOPMAssertionTypePreventUserIdleSystemSleep CFSTR("PreventUserIdleSystemSleep")

SDK_EXTERN io_connect_t IORegisterForSystemPower(void* _Null_unspecified refcon,
                                                 IONotificationPortRef _Nullable* _Nonnull thePortRef,
                                                 IOServiceInterestCallback callback, io_object_t* notifier);
SDK_EXTERN IOReturn IODeregisterForSystemPower(io_object_t* notifier);
SDK_EXTERN IOReturn IOAllowPowerChange(io_connect_t kernelPort, intptr_t notificationID);
SDK_EXTERN IOReturn IOPMAssertionCreateWithName(CFStringRef AssertionType, IOPMAssertionLevel AssertionLevel,
                                                CFStringRef AssertionName, IOPMAssertionID* AssertionID)
    SDK_SINCE(10.6);
SDK_EXTERN IOReturn IOPMAssertionRelease(IOPMAssertionID AssertionID) SDK_SINCE(10.5);

SDK_NONNULL_END
