#pragma once

// What our own declarations of Apple's interfaces have in common.

#pragma clang system_header

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define SDK_EXTERN extern "C"
#else
#define SDK_EXTERN extern
#endif

#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
// In C++ the options' type is a plain number, which the options convert to, so that they can be joined by "|".
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : name
#define SDK_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define SDK_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define SDK_NONNULL_END _Pragma("clang assume_nonnull end")
