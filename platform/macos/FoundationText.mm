#include "platform/macos/FoundationText.h"

#include "base/Path.h"

namespace cirrovane {

NSString* textOf(std::string_view bytes) {
  return [[NSString alloc] initWithBytes:bytes.data() length:bytes.size() encoding:NSUTF8StringEncoding];
}

std::string bytesOf(NSString* text) {
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return data != nil && data.length > 0 ? std::string(static_cast<const char*>(data.bytes), data.length)
                                        : std::string();
}

NSURL* fileURLOf(const std::string& path, bool isFolder) {
  if (path.empty() || !isAddressable(path)) {
    return nil;
  }
  // By its bytes: a URL that is made of a text takes names apart into letters and accents.
  return [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:isFolder relativeToURL:nil];
}

std::string pathOf(NSURL* url) {
  return url.fileSystemRepresentation;
}

}  // namespace cirrovane
