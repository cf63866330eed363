#pragma once

// Texts between Foundation and the standard library, for the Objective-C++ sources of this folder alone.

#import <Foundation/Foundation.h>
#include <string>
#include <string_view>

namespace cirrovane {

/// nil when the bytes are not UTF-8.
NSString* _Nullable textOf(std::string_view bytes);

/// UTF-8; half a character, which Foundation can hold and UTF-8 cannot, is replaced.
std::string bytesOf(NSString* _Nonnull text);

/// The URL of a file or folder; nil when the path is empty or not UTF-8, and so leads to nothing on a Mac's disk.
NSURL* _Nullable fileURLOf(std::string_view path, bool isFolder);

}  // namespace cirrovane
