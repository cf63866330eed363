#pragma once

#include <chrono>

namespace cirrovane {

/// A point in time, in microseconds since 1970-01-01T00:00:00Z; covers every date that a file system can store.
using Time = std::chrono::sys_time<std::chrono::microseconds>;

}  // namespace cirrovane
