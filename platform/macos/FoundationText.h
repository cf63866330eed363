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

/// The URL of a file or folder, whose name stays as it is stored; nil when the path leads to nothing on a Mac's disk.
NSURL* _Nullable fileURLOf(const std::string& path, bool isFolder);

/// The path of a file's URL, as it is stored.
std::string pathOf(NSURL* _Nonnull url);

}  // namespace cirrovane
