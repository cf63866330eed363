#pragma once

#include "base/Result.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace cirrovane {

/// A stored setting that is neither a truth value nor a number nor a text.
struct OtherDefaultsValue {
  friend bool operator==(const OtherDefaultsValue&, const OtherDefaultsValue&) = default;
};

/// A stored setting, with its type: a number is not taken for a truth value, nor the other way round.
using DefaultsValue = std::variant<bool, double, std::string, OtherDefaultsValue>;

/// The user's small settings, remembered across launches. Main thread only.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// The value of a key; absent when it was never set.
  virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
  virtual std::optional<Failure> set(std::string_view key, bool value) = 0;
  virtual std::optional<Failure> set(std::string_view key, const std::string& value) = 0;
  /// A literal is a text, though the language would sooner take it for a truth value.
  std::optional<Failure> set(std::string_view key, const char* value) { return set(key, std::string(value)); }

  /// The value of a key that holds a truth value; absent for any other.
  std::optional<bool> boolean(std::string_view key) const {
    const auto found = value(key);
    const bool* held = found ? std::get_if<bool>(&*found) : nullptr;
    return held != nullptr ? std::optional(*held) : std::nullopt;
  }
  /// The value of a key that a user may set by hand: a truth value, or a number, which is true unless it is zero;
  /// absent for any other.
  std::optional<bool> choice(std::string_view key) const {
    const auto found = value(key);
    const double* number = found ? std::get_if<double>(&*found) : nullptr;
    const bool* held = found ? std::get_if<bool>(&*found) : nullptr;
    return number != nullptr ? std::optional(*number != 0) : held != nullptr ? std::optional(*held) : std::nullopt;
  }
  /// The value of a key that holds a text; absent for any other.
  std::optional<std::string> text(std::string_view key) const {
    const auto found = value(key);
    const std::string* held = found ? std::get_if<std::string>(&*found) : nullptr;
    return held != nullptr ? std::optional(*held) : std::nullopt;
  }
};

}  // namespace cirrovane
