#pragma once

#include <chrono>
#include <functional>

namespace cirrovane {

/// Rings once after a time that counts the machine's sleep, and early whenever the machine wakes. Main thread only,
/// where it also rings.
class Alarm {
 public:
  virtual ~Alarm() = default;
  /// In place of whatever it was set for before.
  virtual void set(std::chrono::nanoseconds after, std::function<void()> ring) = 0;
  virtual void clear() = 0;
};

}  // namespace cirrovane
