#pragma once

#pragma clang system_header

#include "../CoreFoundation/CoreFoundation.h"
#include "../CoreGraphics/CoreGraphics.h"
#include "../declarations.h"

// The runtime's own header where it is at hand.
#if __has_include(<objc/NSObject.h>)
#include <objc/NSObject.h>
#endif

SDK_NONNULL_BEGIN

#if !__has_include(<objc/NSObject.h>)
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#endif

typedef double NSTimeInterval;
typedef CGRect NSRect;
typedef struct _NSZone NSZone;
typedef unsigned short unichar;

@class NSArray<__covariant ObjectType>, NSDate, NSDictionary<__covariant KeyType, __covariant ObjectType>, NSError,
    NSInvocation, NSLocale, NSMethodSignature, NSNotification, NSOperationQueue, NSString, NSTimeZone, NSURL;

#if !__has_include(<objc/NSObject.h>)
@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (Class)class;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)aSelector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
- (instancetype)init;
+ (instancetype)alloc;
+ (Class)class;
- (nullable id)forwardingTargetForSelector:(SEL)aSelector;
@end

#endif

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end

@protocol NSCoding
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

typedef NS_ENUM(NSInteger, NSComparisonResult) { NSOrderedAscending = -1, NSOrderedSame, NSOrderedDescending };

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
@end

@interface NSString : NSObject <NSCopying>
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (BOOL)isEqualToString:(NSString*)aString;
- (NSComparisonResult)localizedCaseInsensitiveCompare:(NSString*)string;
@end

@interface NSNumber : NSObject <NSCopying>
@property(readonly) BOOL boolValue;
@property(readonly) double doubleValue;
@property(readonly) long long longLongValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying>
@property(readonly) NSUInteger count;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)cnt;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)anObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSDate : NSObject <NSCopying>
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)secs;
@end

typedef NSString* NSErrorDomain;

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSException : NSObject
@end

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end

@interface NSLocale : NSObject <NSCopying>
@property(class, readonly, copy) NSLocale* currentLocale;
@end

@interface NSTimeZone : NSObject <NSCopying>
@property(class, readonly, copy) NSTimeZone* systemTimeZone;
@end

typedef NS_ENUM(NSUInteger, NSDateFormatterStyle) {
  NSDateFormatterNoStyle = 0,
  NSDateFormatterShortStyle = 1,
  NSDateFormatterMediumStyle = 2,
};

@interface NSDateFormatter : NSObject
@property(null_resettable, copy) NSString* dateFormat;
@property NSDateFormatterStyle dateStyle;
@property NSDateFormatterStyle timeStyle;
- (NSString*)stringFromDate:(NSDate*)date;
- (void)setLocalizedDateFormatFromTemplate:(NSString*)dateFormatTemplate;
@end

typedef NS_OPTIONS(NSUInteger, NSByteCountFormatterUnits) {
  NSByteCountFormatterUseMB = 1UL << 2,
  NSByteCountFormatterUseGB = 1UL << 3,
};
typedef NS_ENUM(NSInteger, NSByteCountFormatterCountStyle) {
  NSByteCountFormatterCountStyleFile = 0,
};

@interface NSByteCountFormatter : NSObject
@property NSByteCountFormatterUnits allowedUnits;
@property NSByteCountFormatterCountStyle countStyle;
- (NSString*)stringFromByteCount:(long long)byteCount;
@end

typedef NS_OPTIONS(NSUInteger, NSCalendarUnit) {
  NSCalendarUnitDay = 1UL << 4,
  NSCalendarUnitHour = 1UL << 5,
  NSCalendarUnitMinute = 1UL << 6,
};
typedef NS_ENUM(NSInteger, NSDateComponentsFormatterUnitsStyle) {
  NSDateComponentsFormatterUnitsStyleAbbreviated = 1,
};

@interface NSDateComponentsFormatter : NSObject
@property NSCalendarUnit allowedUnits;
@property NSInteger maximumUnitCount;
@property NSDateComponentsFormatterUnitsStyle unitsStyle;
- (nullable NSString*)stringFromTimeInterval:(NSTimeInterval)ti;
@end

typedef NSString* NSURLResourceKey __attribute__((swift_wrapper(struct)));
typedef NSString* NSURLUbiquitousItemDownloadingStatus __attribute__((swift_wrapper(enum)));

SDK_EXTERN NSURLResourceKey const NSURLIsUbiquitousItemKey;
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemIsUploadedKey;
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemIsUploadingKey;
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemHasUnresolvedConflictsKey;
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemDownloadingStatusKey SDK_SINCE(10.9);
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemUploadingErrorKey SDK_SINCE(10.9);
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemDownloadingErrorKey SDK_SINCE(10.9);
SDK_EXTERN NSURLResourceKey const NSURLUbiquitousItemIsExcludedFromSyncKey SDK_SINCE(11.3);
SDK_EXTERN NSURLResourceKey const NSURLIsPackageKey;
SDK_EXTERN NSURLResourceKey const NSURLVolumeAvailableCapacityForImportantUsageKey SDK_SINCE(10.13);
SDK_EXTERN NSURLResourceKey const NSURLVolumeTotalCapacityKey;
SDK_EXTERN NSURLUbiquitousItemDownloadingStatus const NSURLUbiquitousItemDownloadingStatusCurrent SDK_SINCE(10.9);
SDK_EXTERN NSURLUbiquitousItemDownloadingStatus const NSURLUbiquitousItemDownloadingStatusDownloaded SDK_SINCE(10.9);
SDK_EXTERN NSURLUbiquitousItemDownloadingStatus const NSURLUbiquitousItemDownloadingStatusNotDownloaded SDK_SINCE(10.9);

@interface NSURL : NSObject <NSCopying>
@property(readonly) const char* fileSystemRepresentation SDK_SINCE(10.9);
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(nullable NSURL*)baseURL SDK_SINCE(10.9);
+ (nullable instancetype)URLWithString:(NSString*)URLString;
- (nullable NSDictionary<NSURLResourceKey, id>*)resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                                                                error:(NSError* _Nullable* _Nullable)error;
@end

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) { NSApplicationSupportDirectory = 14 };
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) { NSUserDomainMask = 1 };

SDK_EXTERN NSString* NSHomeDirectory(void);

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
@property(nullable, readonly, copy) id<NSObject, NSCopying, NSCoding> ubiquityIdentityToken;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domainMask;
@end

typedef NS_ENUM(NSInteger, NSProcessInfoThermalState) {
  NSProcessInfoThermalStateNominal,
  NSProcessInfoThermalStateFair,
  NSProcessInfoThermalStateSerious,
  NSProcessInfoThermalStateCritical,
};

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
  NSActivityUserInitiatedAllowingIdleSystemSleep = 0x00FFFFFFULL & ~(1ULL << 20),
} SDK_SINCE(10.9);

@interface NSProcessInfo : NSObject
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason SDK_SINCE(10.9);
- (void)endActivity:(id<NSObject>)activity SDK_SINCE(10.9);
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) NSProcessInfoThermalState thermalState SDK_SINCE(10.10.3);
@property(readonly, getter=isLowPowerModeEnabled) BOOL lowPowerModeEnabled SDK_SINCE(12.0);
@property(readonly) NSTimeInterval systemUptime;
@property(readonly) unsigned long long physicalMemory;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(readonly, copy) NSURL* bundleURL;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSURL* executableURL;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

typedef NSString* NSNotificationName;

@interface NSAppleEventDescriptor : NSObject
@property(readonly) uint32_t enumCodeValue;
- (nullable NSAppleEventDescriptor*)attributeDescriptorForKeyword:(uint32_t)keyword;
@end

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
@property(nullable, readonly, strong) NSAppleEventDescriptor* currentAppleEvent;
@end

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)obj
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

SDK_NONNULL_END
