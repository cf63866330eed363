#pragma once

#include <utility>

namespace cirrovane {

/// Owns what a function of the kind Create or Copy has given, and releases it once; holds nullptr when it gave nothing.
template <class Reference, auto release>
class Owned {
 public:
  explicit Owned(Reference reference = nullptr) : reference_(reference) {}
  Owned(Owned&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }
  ~Owned() {
    // Unlike most, these releasing functions do not take nothing for an answer.
    if (reference_ != nullptr) {
      release(reference_);
    }
  }

  explicit operator bool() const { return reference_ != nullptr; }
  Reference get() const { return reference_; }

 private:
  Reference reference_;
};

}  // namespace cirrovane
