#pragma once

#pragma clang system_header

#include "../Foundation/Foundation.h"

SDK_NONNULL_BEGIN

SDK_SINCE(11.0)
@interface UTType : NSObject <NSCopying>
+ (nullable instancetype)typeWithFilenameExtension:(NSString*)filenameExtension conformingToType:(UTType*)supertype;
- (BOOL)conformsToType:(UTType*)type;
@end

SDK_EXTERN UTType* const UTTypeDirectory SDK_SINCE(11.0);
SDK_EXTERN UTType* const UTTypePackage SDK_SINCE(11.0);

SDK_NONNULL_END
