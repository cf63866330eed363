#pragma once

#include "core/ISO8601.h"
#include "core/JSONRecord.h"
#include "core/UUID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace cirrovane {

/// The document of a JSON text. Absent when the text is no JSON, is not UTF-8, or is nested deeper than anything that
/// this program writes.
std::optional<nlohmann::json> parseJSON(std::string_view text);

/// Each readJSON fills the target from a JSON value, strictly: false when the value is of another type, out of range,
/// or lacks a key. The target may then be half filled.
bool readJSON(const nlohmann::json& json, bool& target);
bool readJSON(const nlohmann::json& json, std::int64_t& target);
bool readJSON(const nlohmann::json& json, std::uint64_t& target);
bool readJSON(const nlohmann::json& json, double& target);
bool readJSON(const nlohmann::json& json, std::string& target);
bool readJSON(const nlohmann::json& json, UUID& target);
bool readJSON(const nlohmann::json& json, Time& target);

template <RawRepresentable Enumeration>
bool readJSON(const nlohmann::json& json, Enumeration& target) {
  return json.is_string() && fromRawValue(json.get_ref<const std::string&>(), target);
}

template <JSONRecord Record>
bool readJSON(const nlohmann::json& json, Record& target);

template <class Element>
bool readJSON(const nlohmann::json& json, std::vector<Element>& target) {
  if (!json.is_array()) {
    return false;
  }
  target.clear();
  target.reserve(json.size());
  for (const nlohmann::json& element : json) {
    if (!readJSON(element, target.emplace_back())) {
      return false;
    }
  }
  return true;
}

/// A required member of an object.
template <class Value>
bool readMember(const nlohmann::json& object, std::string_view key, Value& target) {
  const auto found = object.find(key);
  return found != object.end() && readJSON(*found, target);
}

/// An optional member: absent when its key is missing or its value is null.
template <class Value>
bool readMember(const nlohmann::json& object, std::string_view key, std::optional<Value>& target) {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) {
    target.reset();
    return true;
  }
  return readJSON(*found, target.emplace());
}

template <JSONRecord Record>
bool readJSON(const nlohmann::json& json, Record& target) {
  if (!json.is_object()) {
    return false;
  }
  bool isComplete = true;
  forEachField<Record>(
      [&](const auto& field) { isComplete = isComplete && readMember(json, field.key, target.*field.member); });
  return isComplete;
}

/// The value that a JSON text holds; absent when the text is no JSON or not the value's form.
template <class Value>
std::optional<Value> decodeJSON(std::string_view text) {
  const std::optional<nlohmann::json> json = parseJSON(text);
  Value value{};
  if (!json || !readJSON(*json, value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace cirrovane
