#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace cirrovane {

/// Ends an observation when it goes. May outlive what it observes.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    std::swap(end_, other.end_);
    return *this;
  }
  ~Subscription() {
    if (end_) {
      end_();
    }
  }

 private:
  std::function<void()> end_;
};

/// A value whose observers are told of each change before it happens. One thread only.
template <class Value>
class Published {
 public:
  /// Gets the value that is about to be taken, while value() still is the old one.
  using Observer = std::function<void(const Value& next)>;

  Published() = default;
  explicit Published(Value value) : value_(std::move(value)) {}

  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  const Value& value() const { return value_; }

  void set(Value next) {
    // An observer may come or go while the others are told.
    const std::vector<Entry> entries = *entries_;
    for (const Entry& entry : entries) {
      if (isObserving(*entries_, entry.id)) {
        entry.observer(next);
      }
    }
    value_ = std::move(next);
  }

  [[nodiscard]] Subscription observe(Observer observer) {
    const std::uint64_t id = ++lastID_;
    entries_->push_back({id, std::move(observer)});
    return Subscription([id, weakEntries = std::weak_ptr(entries_)] {
      if (const auto entries = weakEntries.lock()) {
        std::erase_if(*entries, [&](const Entry& entry) { return entry.id == id; });
      }
    });
  }

 private:
  struct Entry {
    std::uint64_t id;
    Observer observer;
  };

  static bool isObserving(const std::vector<Entry>& entries, std::uint64_t id) {
    return std::ranges::any_of(entries, [&](const Entry& entry) { return entry.id == id; });
  }

  Value value_{};
  std::shared_ptr<std::vector<Entry>> entries_ = std::make_shared<std::vector<Entry>>();
  std::uint64_t lastID_ = 0;
};

}  // namespace cirrovane
