#pragma once

#include "platform/MotionPreference.h"
#include "platform/macos/WorkspaceNotice.h"

#include <functional>
#include <optional>

namespace cirrovane {

/// "Reduce motion" of the system settings' accessibility page.
class MacMotionPreference final : public MotionPreference {
 public:
  bool isReduced() const override;
  void onChange(std::function<void()> changed) override;

 private:
  std::optional<WorkspaceNotice> notice_;
};

}  // namespace cirrovane
