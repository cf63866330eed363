#pragma clang system_header

#include_next <time.h>

#ifndef CLOCK_UPTIME_RAW
#define CLOCK_UPTIME_RAW 8
#endif
