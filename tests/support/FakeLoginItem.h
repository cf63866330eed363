#pragma once

#include "platform/LoginItem.h"

#include <optional>

namespace cirrovane::test {

/// A login item that the system takes or refuses as the test says.
class FakeLoginItem final : public LoginItem {
 public:
  /// What a request comes to when it succeeds.
  LoginItemState whenOn = LoginItemState::on;
  LoginItemState current = LoginItemState::off;
  /// Why there is none; absent while there is.
  std::optional<Failure> unavailable;
  /// Every request fails with it, while there is one.
  std::optional<Failure> failure;
  bool leadsToSettings = true;
  /// How often the system's settings were opened.
  int opened = 0;

  Result<LoginItemState> state() const override {
    return unavailable ? Result<LoginItemState>(*unavailable) : Result<LoginItemState>(current);
  }
  std::optional<Failure> setOn(bool isOn) override {
    if (!failure) {
      current = isOn ? whenOn : LoginItemState::off;
    }
    return failure;
  }
  bool hasSystemSettings() const override { return leadsToSettings; }
  void openSystemSettings() override { ++opened; }
};

}  // namespace cirrovane::test
