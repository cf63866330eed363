#pragma once

#include "base/JSONRecord.h"

#include <optional>
#include <string_view>

namespace cirrovane {

/// The case of a raw value; absent when no case has it.
template <RawRepresentable Enumeration>
std::optional<Enumeration> caseOf(std::string_view text) {
  Enumeration value{};
  if (!fromRawValue(text, value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace cirrovane
