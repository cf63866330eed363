#pragma once

#pragma clang system_header

#include "../../CoreFoundation/CoreFoundation.h"

SDK_EXTERN CFTypeRef _Nullable IOPSCopyPowerSourcesInfo(void) __attribute__((cf_returns_retained));
SDK_EXTERN CFArrayRef _Nullable IOPSCopyPowerSourcesList(CFTypeRef _Nonnull blob) __attribute__((cf_returns_retained));
SDK_EXTERN CFDictionaryRef _Nullable IOPSGetPowerSourceDescription(CFTypeRef _Nonnull blob, CFTypeRef _Nonnull ps)
    __attribute__((cf_returns_not_retained));
