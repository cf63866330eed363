#include "platform/macos/PackageType.h"

#include "platform/macos/FoundationText.h"

#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

namespace cirrovane {

bool isPackageExtension(std::string_view extension) {
  @autoreleasepool {
    NSString* text = textOf(extension);
    UTType* type = text != nil ? [UTType typeWithFilenameExtension:text conformingToType:UTTypeDirectory] : nil;
    return [type conformsToType:UTTypePackage];
  }
}

}  // namespace cirrovane
