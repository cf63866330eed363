#pragma once

#include "platform/MotionPreference.h"

#include <functional>
#include <memory>

namespace cirrovane {

/// "Reduce motion" of the system settings' accessibility page.
class MacMotionPreference final : public MotionPreference {
 public:
  MacMotionPreference();
  ~MacMotionPreference() override;

  MacMotionPreference(const MacMotionPreference&) = delete;
  MacMotionPreference& operator=(const MacMotionPreference&) = delete;

  bool isReduced() const override;
  void onChange(std::function<void()> changed) override;

 private:
  struct Observation;

  std::unique_ptr<Observation> observation_;
};

}  // namespace cirrovane
