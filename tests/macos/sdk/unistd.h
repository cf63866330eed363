#pragma clang system_header

#include_next <unistd.h>

#ifndef SDK_UNISTD
#define SDK_UNISTD
#include "declarations.h"

SDK_EXTERN int getattrlistat(int fd, const char* name, void* attrlist, void* attrbuf, size_t attrbufsize,
                             unsigned long options);
SDK_EXTERN int getattrlistbulk(int dirfd, void* attrlist, void* attrbuf, size_t attrbufsize, uint64_t options);
#endif
