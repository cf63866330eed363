#include "core/JSONReader.h"

#include <cstddef>
#include <limits>

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
  if (!json.is_string()) {
    return false;
  }
  target = json.get_ref<const std::string&>();
  return true;
}

bool readJSON(const nlohmann::json& json, UUID& target) {
  if (!json.is_string()) {
    return false;
  }
  const std::optional<UUID> id = UUID::fromText(json.get_ref<const std::string&>());
  target = id.value_or(UUID());
  return id.has_value();
}

bool readJSON(const nlohmann::json& json, Time& target) {
  if (!json.is_string()) {
    return false;
  }
  const std::optional<Time> time = timeFromISO8601(json.get_ref<const std::string&>());
  target = time.value_or(Time());
  return time.has_value();
}

}  // namespace cirrovane
