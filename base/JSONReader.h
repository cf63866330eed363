#pragma once

#include "base/ISO8601.h"
#include "base/JSONRecord.h"
#include "base/UUID.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The library itself costs every source that includes it a second or more.
#include <nlohmann/json_fwd.hpp>

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

namespace detail {

/// The text of a JSON string; null for any other value.
const std::string* textOf(const nlohmann::json& json);
bool isObject(const nlohmann::json& json);
bool isNull(const nlohmann::json& json);
/// The value of an object's key; null when there is none, or no object.
const nlohmann::json* findMember(const nlohmann::json& object, std::string_view key);
/// The number of an array's elements; absent for any other value.
std::optional<std::size_t> arraySize(const nlohmann::json& json);
const nlohmann::json& elementAt(const nlohmann::json& array, std::size_t index);
/// Whether the text is JSON and `read` takes its document.
bool readDocument(std::string_view text, const std::function<bool(const nlohmann::json&)>& read);

}  // namespace detail

template <RawRepresentable Enumeration>
bool readJSON(const nlohmann::json& json, Enumeration& target) {
  const std::string* text = detail::textOf(json);
  return text != nullptr && fromRawValue(*text, target);
}

template <JSONRecord Record>
bool readJSON(const nlohmann::json& json, Record& target);

template <class Element>
bool readJSON(const nlohmann::json& json, std::vector<Element>& target) {
  const std::optional<std::size_t> size = detail::arraySize(json);
  if (!size) {
    return false;
  }
  target.clear();
  target.reserve(*size);
  for (std::size_t index = 0; index < *size; ++index) {
    if (!readJSON(detail::elementAt(json, index), target.emplace_back())) {
      return false;
    }
  }
  return true;
}

/// A required member of an object.
template <class Value>
bool readMember(const nlohmann::json& object, std::string_view key, Value& target) {
  const nlohmann::json* found = detail::findMember(object, key);
  return found != nullptr && readJSON(*found, target);
}

/// An optional member: absent when its key is missing or its value is null.
template <class Value>
bool readMember(const nlohmann::json& object, std::string_view key, std::optional<Value>& target) {
  const nlohmann::json* found = detail::findMember(object, key);
  if (found == nullptr || detail::isNull(*found)) {
    target.reset();
    return true;
  }
  return readJSON(*found, target.emplace());
}

template <JSONRecord Record>
bool readJSON(const nlohmann::json& json, Record& target) {
  if (!detail::isObject(json)) {
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
  std::optional<Value> value(std::in_place);
  if (!detail::readDocument(text, [&](const nlohmann::json& json) { return readJSON(json, *value); })) {
    value.reset();
  }
  return value;
}

}  // namespace cirrovane
