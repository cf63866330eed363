#pragma once

#include "base/ISO8601.h"
#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "fuzz/Require.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace cirrovane {

namespace detail {

template <class>
inline constexpr bool isOptional = false;
template <class Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

template <class>
inline constexpr bool isVector = false;
template <class Element>
inline constexpr bool isVector<std::vector<Element>> = true;

}  // namespace detail

/// Makes every time in a value what its text holds: in whole seconds, and within four digits of a year.
template <class Value>
void writeTimesAsWritten(Value& value) {
  if constexpr (std::is_same_v<Value, Time>) {
    const std::optional<Time> read = timeFromISO8601(iso8601Text(value));
    require(read.has_value(), "every time's text is a time");
    value = *read;
  } else if constexpr (detail::isOptional<Value>) {
    if (value) {
      writeTimesAsWritten(*value);
    }
  } else if constexpr (detail::isVector<Value>) {
    for (auto& element : value) {
      writeTimesAsWritten(element);
    }
  } else if constexpr (JSONRecord<Value>) {
    forEachField<Value>([&](const auto& field) { writeTimesAsWritten(value.*field.member); });
  }
}

/// Reads a stored value from bytes that anyone may have edited; when they are one, what it is written as must mean the
/// same and stay as it is.
template <class Value>
void requireRoundTrip(std::string_view bytes) {
  std::optional<Value> value = decodeJSON<Value>(bytes);
  if (!value) {
    return;
  }
  const std::string text = encodeJSON(*value);
  const std::optional<Value> again = decodeJSON<Value>(text);
  require(again.has_value(), "what was written can be read");
  writeTimesAsWritten(*value);
  require(*again == *value, "what was written reads as the same value");
  require(hashValue(*again) == hashValue(*value), "equal values have equal hashes");
  require(encodeJSON(*again) == text, "the same value is written as the same text");
}

}  // namespace cirrovane
