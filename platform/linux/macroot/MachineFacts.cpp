#include "platform/linux/macroot/MachineFacts.h"

#include <cmath>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

/// The value of a key; null when there is none.
json valueOf(const json& facts, const char* key) {
  const auto found = facts.find(key);
  return found != facts.end() ? *found : json();
}

}  // namespace

std::optional<bool> booleanFact(const json& facts, const char* key) {
  const json value = valueOf(facts, key);
  return value.is_boolean() ? std::optional(value.get<bool>()) : std::nullopt;
}

std::optional<double> numericFact(const json& facts, const char* key) {
  const json value = valueOf(facts, key);
  return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
}

std::optional<std::int64_t> integerFact(const json& facts, const char* key) {
  const std::optional<double> number = numericFact(facts, key);
  // 2^63 is the first number beyond, and, unlike the last one inside, has an exact double.
  if (!number || std::trunc(*number) != *number || *number < -0x1p63 || *number >= 0x1p63) {
    return std::nullopt;
  }
  const json value = valueOf(facts, key);
  return value.is_number_float() ? static_cast<std::int64_t>(*number) : value.get<std::int64_t>();
}

}  // namespace cirrovane
