#include "platform/macos/MacSymbolSource.h"

#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/Owned.h"
#include "platform/macos/plain/SymbolPlacement.h"

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace cirrovane {
namespace {

using OwnedContext = Owned<CGContextRef, CGContextRelease>;
using OwnedColorSpace = Owned<CGColorSpaceRef, CGColorSpaceRelease>;

constexpr std::size_t kChannels = 4;
constexpr std::size_t kOpacityChannel = 3;

/// The symbol, made for about this height; nil when the system has none of that name.
NSImage* symbolOf(const std::string& name, int height) {
  NSString* text = textOf(name);
  NSImage* image = text != nil ? [NSImage imageWithSystemSymbolName:text accessibilityDescription:nil] : nil;
  NSImageSymbolConfiguration* configuration =
      [NSImageSymbolConfiguration configurationWithPointSize:height weight:NSFontWeightRegular];
  return [image imageWithSymbolConfiguration:configuration];
}

}  // namespace

std::optional<SymbolBitmap> MacSymbolSource::draw(const std::string& name, int width, int height) const {
  if (width <= 0 || height <= 0) {
    return std::nullopt;
  }
  @autoreleasepool {
    NSImage* image = symbolOf(name, height);
    if (image == nil) {
      return std::nullopt;
    }
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    std::vector<std::uint8_t> pixels(columns * rows * kChannels);
    const OwnedColorSpace space(CGColorSpaceCreateDeviceRGB());
    const OwnedContext context(CGBitmapContextCreate(pixels.data(), columns, rows, 8, columns * kChannels, space.get(),
                                                     kCGImageAlphaPremultipliedLast));
    if (!context) {
      return std::nullopt;
    }
    const SymbolPlacement place = fitted(image.size.width, image.size.height, width, height);
    NSGraphicsContext* former = NSGraphicsContext.currentContext;
    NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:context.get() flipped:NO];
    [image drawInRect:NSMakeRect(place.x, place.y, place.width, place.height)
             fromRect:NSZeroRect
            operation:NSCompositingOperationSourceOver
             fraction:1];
    NSGraphicsContext.currentContext = former;

    SymbolBitmap bitmap{width, height, std::vector<std::uint8_t>(columns * rows)};
    for (std::size_t pixel = 0; pixel < bitmap.coverage.size(); ++pixel) {
      bitmap.coverage[pixel] = pixels[pixel * kChannels + kOpacityChannel];
    }
    return bitmap;
  }
}

}  // namespace cirrovane
