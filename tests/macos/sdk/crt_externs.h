#pragma once

#pragma clang system_header

#include "declarations.h"

SDK_EXTERN char*** _NSGetEnviron(void);
