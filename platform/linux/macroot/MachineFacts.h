#pragma once

#include <cstdint>
#include <optional>

#include <nlohmann/json_fwd.hpp>

namespace cirrovane {

// Single values of a machine's description; each is absent when the key is missing or holds something of another type.

std::optional<bool> booleanFact(const nlohmann::json& facts, const char* key);
std::optional<double> numericFact(const nlohmann::json& facts, const char* key);
/// Also absent for a number with a fraction, and for one beyond the type's range.
std::optional<std::int64_t> integerFact(const nlohmann::json& facts, const char* key);

}  // namespace cirrovane
