#pragma once

#include <functional>

namespace cirrovane {

/// Whether the user wants less motion on the whole system. Main thread only.
class MotionPreference {
 public:
  virtual ~MotionPreference() = default;
  virtual bool isReduced() const = 0;
  /// Has a function called on the main thread after each change, in place of the one before; nullptr for none.
  virtual void onChange(std::function<void()> changed) = 0;
};

}  // namespace cirrovane
