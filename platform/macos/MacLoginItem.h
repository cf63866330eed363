#pragma once

#include "platform/Bundle.h"
#include "platform/LoginItem.h"

#include <optional>

namespace cirrovane {

/// The application among the login items of the system settings, which take no bare executable.
class MacLoginItem final : public LoginItem {
 public:
  /// The bundle outlives this.
  explicit MacLoginItem(const Bundle& bundle) : bundle_(bundle) {}

  Result<LoginItemState> state() const override;
  std::optional<Failure> setOn(bool isOn) override;
  bool hasSystemSettings() const override { return true; }
  void openSystemSettings() override;

 private:
  const Bundle& bundle_;
};

}  // namespace cirrovane
