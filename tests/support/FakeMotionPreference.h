#pragma once

#include "platform/MotionPreference.h"

#include <functional>
#include <utility>

namespace cirrovane {

/// A system on which a test asks for less motion.
class FakeMotionPreference final : public MotionPreference {
 public:
  bool isReduced() const override { return isReduced_; }
  void onChange(std::function<void()> changed) override { changed_ = std::move(changed); }

  void setReduced(bool isReduced) {
    isReduced_ = isReduced;
    if (changed_) {
      changed_();
    }
  }
  bool isObserved() const { return changed_ != nullptr; }

 private:
  bool isReduced_ = false;
  std::function<void()> changed_;
};

}  // namespace cirrovane
