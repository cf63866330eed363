#pragma once

#pragma clang system_header

#include "../CoreFoundation/CoreFoundation.h"

typedef double CGFloat;

typedef struct CGPoint {
  CGFloat x;
  CGFloat y;
} CGPoint;

typedef struct CGSize {
  CGFloat width;
  CGFloat height;
} CGSize;

typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;

typedef struct CGContext* CGContextRef;
typedef struct CGColorSpace* CGColorSpaceRef;

enum : uint32_t { kCGImageAlphaPremultipliedLast = 1 };

SDK_EXTERN CGColorSpaceRef _Nullable CGColorSpaceCreateDeviceRGB(void) __attribute__((cf_returns_retained));
SDK_EXTERN void CGColorSpaceRelease(CGColorSpaceRef _Nullable space);
SDK_EXTERN CGContextRef _Nullable CGBitmapContextCreate(void* _Nullable data, size_t width, size_t height,
                                                        size_t bitsPerComponent, size_t bytesPerRow,
                                                        CGColorSpaceRef _Nullable space, uint32_t bitmapInfo)
    __attribute__((cf_returns_retained));
SDK_EXTERN void CGContextRelease(CGContextRef _Nullable c);
