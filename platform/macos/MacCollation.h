#pragma once

#include "platform/Collation.h"

#include <compare>
#include <string_view>

namespace cirrovane {

/// The order of names in the user's language, as Foundation has it.
class MacCollation final : public Collation {
 public:
  /// Bytes that are not UTF-8 are no text in any language; with them, the bytes decide.
  std::weak_ordering compare(std::string_view lhs, std::string_view rhs) const override;
};

}  // namespace cirrovane
