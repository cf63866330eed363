#pragma once

namespace cirrovane::demo {

/// What the program tells a script by its exit status; the numbers are those of cirrovanectl.
enum class ExitStatus {
  done = 0,
  wrongUsage = 2,
  couldNot = 3,
};

}  // namespace cirrovane::demo
