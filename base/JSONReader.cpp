#include "base/JSONReader.h"

#include <cstddef>
#include <limits>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

/// Far above the depth of any record, far below what a document of brackets alone could cost in memory.
constexpr std::size_t kMaximumDepth = 64;

bool isNestedTooDeep(std::string_view text) {
  std::size_t depth = 0;
  bool isInString = false;
  for (std::size_t position = 0; position < text.size(); ++position) {
    const char byte = text[position];
    if (isInString) {
      if (byte == '\\') {
        ++position;
      } else if (byte == '"') {
        isInString = false;
      }
    } else if (byte == '"') {
      isInString = true;
    } else if (byte == '[' || byte == '{') {
      if (++depth > kMaximumDepth) {
        return true;
      }
    } else if ((byte == ']' || byte == '}') && depth > 0) {
      --depth;
    }
  }
  return false;
}

}  // namespace

std::optional<nlohmann::json> parseJSON(std::string_view text) {
  // The parser takes a NUL for the end of its input and would accept whatever follows; no JSON text holds one.
  if (text.find('\0') != std::string_view::npos || isNestedTooDeep(text)) {
    return std::nullopt;
  }
  nlohmann::json json = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (json.is_discarded()) {
    return std::nullopt;
  }
  return json;
}

namespace detail {

const std::string* textOf(const nlohmann::json& json) {
  return json.is_string() ? &json.get_ref<const std::string&>() : nullptr;
}

bool isObject(const nlohmann::json& json) {
  return json.is_object();
}

bool isNull(const nlohmann::json& json) {
  return json.is_null();
}

const nlohmann::json* findMember(const nlohmann::json& object, std::string_view key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

std::optional<std::size_t> arraySize(const nlohmann::json& json) {
  return json.is_array() ? std::optional(json.size()) : std::nullopt;
}

const nlohmann::json& elementAt(const nlohmann::json& array, std::size_t index) {
  return array[index];
}

bool readDocument(std::string_view text, const std::function<bool(const nlohmann::json&)>& read) {
  const std::optional<nlohmann::json> json = parseJSON(text);
  return json && read(*json);
}

}  // namespace detail

bool readJSON(const nlohmann::json& json, bool& target) {
  if (!json.is_boolean()) {
    return false;
  }
  target = json.get<bool>();
  return true;
}

bool readJSON(const nlohmann::json& json, std::int64_t& target) {
  if (json.is_number_unsigned() &&
      json.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
    return false;
  }
  if (!json.is_number_integer()) {
    return false;
  }
  target = json.get<std::int64_t>();
  return true;
}

bool readJSON(const nlohmann::json& json, std::uint64_t& target) {
  if (!json.is_number_unsigned()) {
    return false;
  }
  target = json.get<std::uint64_t>();
  return true;
}

bool readJSON(const nlohmann::json& json, double& target) {
  if (!json.is_number()) {
    return false;
  }
  target = json.get<double>();
  return true;
}

bool readJSON(const nlohmann::json& json, std::string& target) {
  const std::string* text = detail::textOf(json);
  if (text == nullptr) {
    return false;
  }
  target = *text;
  return true;
}

bool readJSON(const nlohmann::json& json, UUID& target) {
  const std::string* text = detail::textOf(json);
  if (text == nullptr) {
    return false;
  }
  const std::optional<UUID> id = UUID::fromText(*text);
  target = id.value_or(UUID());
  return id.has_value();
}

bool readJSON(const nlohmann::json& json, Time& target) {
  const std::string* text = detail::textOf(json);
  if (text == nullptr) {
    return false;
  }
  const std::optional<Time> time = timeFromISO8601(*text);
  target = time.value_or(Time());
  return time.has_value();
}

}  // namespace cirrovane
