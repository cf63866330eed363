#include "platform/macos/MacWorkspace.h"

#include "platform/macos/FoundationText.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

namespace cirrovane {

void MacWorkspace::reveal(const std::string& path) {
  @autoreleasepool {
    if (NSURL* url = fileURLOf(path, /*isFolder=*/false)) {
      [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
    }
  }
}

void MacWorkspace::openURL(const std::string& url) {
  @autoreleasepool {
    NSString* text = textOf(url);
    NSURL* address = text != nil ? [NSURL URLWithString:text] : nil;
    if (address != nil) {
      [NSWorkspace.sharedWorkspace openURL:address];
    }
  }
}

}  // namespace cirrovane
