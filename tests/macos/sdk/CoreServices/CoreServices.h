#pragma once

#pragma clang system_header

#include "../CoreFoundation/CoreFoundation.h"
#include "../declarations.h"

#include <dispatch/dispatch.h>

SDK_NONNULL_BEGIN

typedef unsigned int UInt32;
typedef unsigned long long UInt64;
typedef double CFTimeInterval;
typedef const struct __CFAllocator* CFAllocatorRef;
SDK_EXTERN const CFAllocatorRef _Null_unspecified kCFAllocatorDefault;
typedef const void* _Nullable (*CFAllocatorRetainCallBack)(const void* _Null_unspecified info);
typedef void (*CFAllocatorReleaseCallBack)(const void* _Null_unspecified info);
typedef CFTypeRef _Nullable (*CFAllocatorCopyDescriptionCallBack)(const void* _Null_unspecified info);

typedef int SInt32;
typedef short SInt16;
typedef SInt32 OSStatus;
typedef SInt16 OSErr;
typedef UInt32 OSType;
typedef long Size;
enum : SInt16 { noErr = 0 };

typedef struct ProcessSerialNumber {
  UInt32 highLongOfPSN;
  UInt32 lowLongOfPSN;
} ProcessSerialNumber;
enum : UInt32 { kNoProcess = 0, kSystemProcess = 1, kCurrentProcess = 2 };

typedef OSType DescType;
typedef UInt32 AEKeyword;
typedef UInt32 AEEventClass;
typedef UInt32 AEEventID;
typedef SInt16 AEReturnID;
typedef SInt32 AETransactionID;
typedef SInt32 AESendMode;
typedef struct OpaqueAEDataStorageType* AEDataStorageType;
typedef struct AEDesc {
  DescType descriptorType;
  AEDataStorageType _Nullable* _Nullable dataHandle;
} AEDesc;
typedef AEDesc AEAddressDesc;
typedef AEDesc AppleEvent;

enum : UInt32 {
  kCoreEventClass = 'aevt',
  typeNull = 'null',
  typeProcessSerialNumber = 'psn ',
  kAEQuitReason = 'why?',
  kAELogOut = 'logo',
  kAEReallyLogOut = 'rlgo',
  kAEShowRestartDialog = 'rrst',
  kAEShowShutdownDialog = 'rsdn',
  kAERestart = 'rest',
  kAEShutDown = 'shut',
  kAESleep = 'slep',
};
enum : SInt16 { kAutoGenerateReturnID = -1 };
enum : SInt32 { kAnyTransactionID = 0, kAENoReply = 0x00000001, kAEDefaultTimeout = -1 };

SDK_EXTERN OSErr AECreateDesc(DescType typeCode, const void* _Nullable dataPtr, Size dataSize, AEDesc* result);
SDK_EXTERN OSErr AEDisposeDesc(AEDesc* theAEDesc);
SDK_EXTERN OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID, const AEAddressDesc* target,
                                    AEReturnID returnID, AETransactionID transactionID, AppleEvent* result);
SDK_EXTERN OSStatus AESendMessage(const AppleEvent* event, AppleEvent* _Nullable reply, AESendMode sendMode,
                                  long timeOutInTicks);

typedef UInt32 FSEventStreamCreateFlags;
enum : FSEventStreamCreateFlags {
  kFSEventStreamCreateFlagNoDefer = 0x00000002,
  kFSEventStreamCreateFlagWatchRoot = 0x00000004,
  kFSEventStreamCreateFlagFileEvents SDK_SINCE(10.7) = 0x00000010,
};

typedef UInt32 FSEventStreamEventFlags;
enum : FSEventStreamEventFlags {
  kFSEventStreamEventFlagMustScanSubDirs = 0x00000001,
  kFSEventStreamEventFlagUserDropped = 0x00000002,
  kFSEventStreamEventFlagKernelDropped = 0x00000004,
  kFSEventStreamEventFlagEventIdsWrapped = 0x00000008,
  kFSEventStreamEventFlagHistoryDone = 0x00000010,
  kFSEventStreamEventFlagRootChanged = 0x00000020,
  kFSEventStreamEventFlagMount = 0x00000040,
  kFSEventStreamEventFlagUnmount = 0x00000080,
  kFSEventStreamEventFlagItemCreated SDK_SINCE(10.7) = 0x00000100,
  kFSEventStreamEventFlagItemRemoved SDK_SINCE(10.7) = 0x00000200,
  kFSEventStreamEventFlagItemRenamed SDK_SINCE(10.7) = 0x00000800,
  kFSEventStreamEventFlagItemIsDir SDK_SINCE(10.7) = 0x00020000,
};

typedef UInt64 FSEventStreamEventId;
enum : FSEventStreamEventId { kFSEventStreamEventIdSinceNow = 0xFFFFFFFFFFFFFFFFULL };

typedef struct __FSEventStream* FSEventStreamRef;
typedef const struct __FSEventStream* ConstFSEventStreamRef;

typedef struct FSEventStreamContext {
  CFIndex version;
  void* _Nullable info;
  CFAllocatorRetainCallBack _Nullable retain;
  CFAllocatorReleaseCallBack _Nullable release;
  CFAllocatorCopyDescriptionCallBack _Nullable copyDescription;
} FSEventStreamContext;

typedef void (*FSEventStreamCallback)(ConstFSEventStreamRef streamRef, void* _Nullable clientCallBackInfo,
                                      size_t numEvents, void* eventPaths, const FSEventStreamEventFlags* eventFlags,
                                      const FSEventStreamEventId* eventIds);

SDK_EXTERN FSEventStreamRef _Nullable FSEventStreamCreate(CFAllocatorRef _Nullable allocator,
                                                          FSEventStreamCallback callback,
                                                          FSEventStreamContext* _Nullable context,
                                                          CFArrayRef pathsToWatch, FSEventStreamEventId sinceWhen,
                                                          CFTimeInterval latency, FSEventStreamCreateFlags flags)
    SDK_SINCE(10.5);
SDK_EXTERN void FSEventStreamSetDispatchQueue(FSEventStreamRef streamRef, dispatch_queue_t _Nullable q) SDK_SINCE(10.6);
SDK_EXTERN Boolean FSEventStreamStart(FSEventStreamRef streamRef) SDK_SINCE(10.5);
SDK_EXTERN FSEventStreamEventId FSEventStreamFlushAsync(FSEventStreamRef streamRef) SDK_SINCE(10.5);
SDK_EXTERN void FSEventStreamStop(FSEventStreamRef streamRef) SDK_SINCE(10.5);
SDK_EXTERN void FSEventStreamInvalidate(FSEventStreamRef streamRef) SDK_SINCE(10.5);
SDK_EXTERN void FSEventStreamRelease(FSEventStreamRef streamRef) SDK_SINCE(10.5);

SDK_NONNULL_END
