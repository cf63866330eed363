#pragma once

#pragma clang system_header

#include "../declarations.h"

SDK_NONNULL_BEGIN

typedef const void* CFTypeRef;
typedef unsigned long CFTypeID;
typedef long CFIndex;
typedef unsigned char Boolean;
typedef const struct __attribute__((objc_bridge(NSArray))) __CFArray* CFArrayRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary* CFDictionaryRef;
typedef const struct __attribute__((objc_bridge(NSString))) __CFString* CFStringRef;
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))

SDK_EXTERN void CFRelease(CFTypeRef cf);
SDK_EXTERN CFTypeID CFGetTypeID(CFTypeRef cf);
SDK_EXTERN CFTypeID CFBooleanGetTypeID(void);
SDK_EXTERN CFIndex CFArrayGetCount(CFArrayRef theArray);
SDK_EXTERN const void* _Null_unspecified CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx);

SDK_NONNULL_END
