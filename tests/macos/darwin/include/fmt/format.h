// Newer releases have join in ranges.h alone.

#pragma once

#pragma clang system_header

#if __has_include_next(<fmt/base.h>)
#include_next <fmt/format.h>
#else
#define join join_of_ranges
#include_next <fmt/format.h>
#undef join
#endif
