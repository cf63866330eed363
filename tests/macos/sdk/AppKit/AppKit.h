#pragma once

#pragma clang system_header

#include "../Foundation/Foundation.h"

SDK_NONNULL_BEGIN

typedef CGFloat NSFontWeight;
SDK_EXTERN const NSFontWeight NSFontWeightRegular;
SDK_EXTERN const NSRect NSZeroRect;
SDK_EXTERN NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification SDK_SINCE(10.10);
SDK_EXTERN NSNotificationName const NSWorkspaceDidWakeNotification;

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
  NSRect rect = {{x, y}, {w, h}};
  return rect;
}

typedef NS_ENUM(NSUInteger, NSCompositingOperation) { NSCompositingOperationSourceOver = 2 };

@class NSApplication;

typedef NS_ENUM(NSUInteger, NSApplicationTerminateReply) {
  NSTerminateCancel = 0,
  NSTerminateNow = 1,
  NSTerminateLater = 2
};

@protocol NSApplicationDelegate <NSObject>
@optional
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
- (void)applicationWillTerminate:(NSNotification*)notification;
@end

@interface NSApplication : NSObject
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
- (void)replyToApplicationShouldTerminate:(BOOL)shouldTerminate;
- (void)activateIgnoringOtherApps:(BOOL)flag;
@end

@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion SDK_SINCE(10.12);
- (BOOL)openURL:(NSURL*)url;
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)fileURLs;
@end

@interface NSGraphicsContext : NSObject
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (NSGraphicsContext*)graphicsContextWithCGContext:(CGContextRef)graphicsPort flipped:(BOOL)initialFlippedState;
@end

SDK_SINCE(11.0)
@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage : NSObject
@property CGSize size;
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description SDK_SINCE(11.0);
- (nullable NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration SDK_SINCE(11.0);
- (void)drawInRect:(NSRect)rect fromRect:(NSRect)fromRect operation:(NSCompositingOperation)op fraction:(CGFloat)delta;
@end

SDK_NONNULL_END
