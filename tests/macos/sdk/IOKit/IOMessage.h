#pragma once

#pragma clang system_header

#define sys_iokit 0xe0000000u
#define sub_iokit_common 0u
#define iokit_common_msg(message) ((unsigned int)(sys_iokit | sub_iokit_common | (message)))

#define kIOMessageCanSystemSleep iokit_common_msg(0x270)
#define kIOMessageSystemWillSleep iokit_common_msg(0x280)
#define kIOMessageSystemWillNotSleep iokit_common_msg(0x290)
#define kIOMessageSystemHasPoweredOn iokit_common_msg(0x300)
