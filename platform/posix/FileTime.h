#pragma once

#include "base/Time.h"

#include <ctime>

namespace cirrovane {

/// A file's date as the system keeps it. Any number of seconds is taken: one that no clock could show becomes the
/// nearest that it could.
Time timeOf(const timespec& stamp);

}  // namespace cirrovane
