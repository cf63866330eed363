#pragma once

#include "platform/UserDefaults.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::test {

/// User defaults in memory.
class FakeUserDefaults final : public UserDefaults {
 public:
  using UserDefaults::set;

  /// Every attempt to store something fails with it, while there is one.
  std::optional<Failure> failure;

  std::optional<DefaultsValue> value(std::string_view key) const override {
    log_.push_back("read " + std::string(key));
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<Failure> set(std::string_view key, bool value) override { return store(key, value); }
  std::optional<Failure> set(std::string_view key, const std::string& value) override { return store(key, value); }

  /// Sets a value of any kind, without an entry in the log.
  void hold(const std::string& key, DefaultsValue value) { values_[key] = std::move(value); }
  void forget(const std::string& key) { values_.erase(key); }

  /// The values, for a look at them that leaves no entry in the log.
  const std::map<std::string, DefaultsValue, std::less<>>& values() const { return values_; }
  /// "read KEY" and "set KEY", in order.
  const std::vector<std::string>& log() const { return log_; }

 private:
  std::optional<Failure> store(std::string_view key, DefaultsValue value) {
    log_.push_back("set " + std::string(key));
    if (!failure) {
      values_[std::string(key)] = std::move(value);
    }
    return failure;
  }

  std::map<std::string, DefaultsValue, std::less<>> values_;
  mutable std::vector<std::string> log_;
};

}  // namespace cirrovane::test
