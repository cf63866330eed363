#pragma clang system_header

#include_next <sys/stat.h>

#ifndef UF_HIDDEN
#define UF_HIDDEN 0x00008000
#endif
