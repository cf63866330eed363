#pragma once

#include "base/JSONRecord.h"

#include <cstddef>
#include <memory>
#include <utility>

#include <nlohmann/json_fwd.hpp>

namespace cirrovane {

/// A value that never changes again and that all copies of this hold together: a large report is handed from thread to
/// thread without being copied. Equal when the values are.
template <class Value>
class Shared {
 public:
  Shared() : value_(std::make_shared<const Value>()) {}
  explicit Shared(Value value) : value_(std::make_shared<const Value>(std::move(value))) {}

  const Value& operator*() const { return *value_; }
  const Value* operator->() const { return value_.get(); }

  friend bool operator==(const Shared& lhs, const Shared& rhs) {
    return lhs.value_ == rhs.value_ || *lhs.value_ == *rhs.value_;
  }

 private:
  std::shared_ptr<const Value> value_;
};

template <class Value>
std::size_t hashValue(const Shared<Value>& shared) {
  return hashValue(*shared);
}

template <class Value>
bool readJSON(const nlohmann::json& json, Shared<Value>& target) {
  Value value{};
  const bool isRead = readJSON(json, value);
  target = Shared<Value>(std::move(value));
  return isRead;
}

}  // namespace cirrovane
