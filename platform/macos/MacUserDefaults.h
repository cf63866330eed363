#pragma once

#include "platform/UserDefaults.h"

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// The user's settings for this program, as the system keeps them. Nothing that is set here can fail.
class MacUserDefaults final : public UserDefaults {
 public:
  using UserDefaults::set;

  std::optional<DefaultsValue> value(std::string_view key) const override;
  std::optional<Failure> set(std::string_view key, bool value) override;
  std::optional<Failure> set(std::string_view key, const std::string& value) override;
};

}  // namespace cirrovane
