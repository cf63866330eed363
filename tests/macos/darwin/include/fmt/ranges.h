#pragma once

#pragma clang system_header

#include <fmt/format.h>

#if __has_include_next(<fmt/base.h>)
#include_next <fmt/ranges.h>
#else
namespace fmt {

template <class Range>
auto join(Range&& range, string_view separator) -> decltype(join_of_ranges(static_cast<Range&&>(range), separator)) {
  return join_of_ranges(static_cast<Range&&>(range), separator);
}

}  // namespace fmt
#endif
