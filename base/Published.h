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

/// A value that tells its observers of each change. One thread only. Whoever may only look has it const: to observe
/// changes nothing of the value.
template <class Value>
class Published {
 public:
  /// Gets the new value: before a change while value() still is the old one, after it when value() is the new one.
  using Observer = std::function<void(const Value& next)>;

  Published() = default;
  explicit Published(Value value) : value_(std::move(value)) {}

  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  const Value& value() const { return value_; }

  void set(Value next) {
    tell(Moment::before, next);
    value_ = std::move(next);
    tell(Moment::after, value_);
  }

  /// Tells before each change.
  [[nodiscard]] Subscription observe(Observer observer) const { return add(Moment::before, std::move(observer)); }
  /// Tells after each change.
  [[nodiscard]] Subscription afterChange(Observer observer) const { return add(Moment::after, std::move(observer)); }

 private:
  enum class Moment : std::uint8_t { before, after };

  struct Entry {
    std::uint64_t id;
    Moment moment;
    Observer observer;
  };

  struct Entries {
    std::vector<Entry> list;
    std::uint64_t lastID = 0;
  };

  static bool isObserving(const Entries& entries, std::uint64_t id) {
    return std::ranges::any_of(entries.list, [&](const Entry& entry) { return entry.id == id; });
  }

  void tell(Moment moment, const Value& next) const {
    // An observer may come or go while the others are told.
    const std::vector<Entry> entries = entries_->list;
    for (const Entry& entry : entries) {
      if (entry.moment == moment && isObserving(*entries_, entry.id)) {
        entry.observer(next);
      }
    }
  }

  Subscription add(Moment moment, Observer observer) const {
    const std::uint64_t id = ++entries_->lastID;
    entries_->list.push_back({id, moment, std::move(observer)});
    return Subscription([id, weakEntries = std::weak_ptr(entries_)] {
      if (const auto entries = weakEntries.lock()) {
        std::erase_if(entries->list, [&](const Entry& entry) { return entry.id == id; });
      }
    });
  }

  Value value_{};
  std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace cirrovane
