#pragma once

#include <string>
#include <utility>
#include <variant>

namespace cirrovane {

/// Why an operation could not be done, as one sentence for a person.
struct Failure {
  std::string message;
  friend bool operator==(const Failure&, const Failure&) = default;
};

/// The value of an operation, or the failure that came in its place.
template <class Value>
class [[nodiscard]] Result {
 public:
  Result(Value value) : content_(std::move(value)) {}
  Result(Failure failure) : content_(std::move(failure)) {}

  explicit operator bool() const { return std::holds_alternative<Value>(content_); }

  /// The value; only after a check that there is one.
  Value& operator*() { return std::get<Value>(content_); }
  const Value& operator*() const { return std::get<Value>(content_); }
  Value* operator->() { return &std::get<Value>(content_); }
  const Value* operator->() const { return &std::get<Value>(content_); }

  /// The failure's sentence; only when there is no value.
  const std::string& message() const { return std::get<Failure>(content_).message; }

 private:
  std::variant<Value, Failure> content_;
};

}  // namespace cirrovane
