#pragma once

namespace cirrovane {

/// What the program tells a script by its exit status.
enum class ExitStatus {
  /// Safe to close; or, for a command without a verdict, done.
  done = 0,
  notSafe = 1,
  wrongUsage = 2,
  couldNot = 3,
};

}  // namespace cirrovane
