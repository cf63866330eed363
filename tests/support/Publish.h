#pragma once

#include "base/Published.h"

#include <utility>

namespace cirrovane::test {

/// Publishes a value in the place of its owner, who alone has it to change.
template <class Value>
void setPublished(const Published<Value>& published, Value value) {
  // Owners hold their values as members that are not const.
  const_cast<Published<Value>&>(published).set(std::move(value));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

}  // namespace cirrovane::test
