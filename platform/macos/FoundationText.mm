#include "platform/macos/FoundationText.h"

namespace cirrovane {

NSString* textOf(std::string_view bytes) {
  return [[NSString alloc] initWithBytes:bytes.data() length:bytes.size() encoding:NSUTF8StringEncoding];
}

std::string bytesOf(NSString* text) {
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return data != nil && data.length > 0 ? std::string(static_cast<const char*>(data.bytes), data.length)
                                        : std::string();
}

NSURL* fileURLOf(std::string_view path, bool isFolder) {
  // A NUL would end the path early and lead to another item.
  const bool isAddressable = !path.empty() && path.find('\0') == std::string_view::npos;
  NSString* text = isAddressable ? textOf(path) : nil;
  return text != nil ? [NSURL fileURLWithPath:text isDirectory:isFolder] : nil;
}

}  // namespace cirrovane
