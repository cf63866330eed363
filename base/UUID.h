#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace cirrovane {

/// A 128-bit identifier.
class UUID {
 public:
  /// The nil identifier, all zero.
  constexpr UUID() = default;
  constexpr explicit UUID(const std::array<std::uint8_t, 16>& bytes) : bytes_(bytes) {}

  /// The identifier of a text in the form 8-4-4-4-12 hexadecimal digits of either case; absent for any other text.
  static std::optional<UUID> fromText(std::string_view text);

  /// The canonical upper-case text, 36 characters.
  std::string text() const;

  const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }

  friend constexpr bool operator==(const UUID&, const UUID&) = default;
  // Apple's library lacks `<=>` for `std::array`.
  friend constexpr bool operator<(const UUID& lhs, const UUID& rhs) { return lhs.bytes_ < rhs.bytes_; }

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

/// Makes random (version 4) identifiers. Cheap to call, not to construct: one for a scan, not one for a blocker.
class UUIDGenerator {
 public:
  UUIDGenerator();
  UUID operator()();

 private:
  std::mt19937_64 random_;
};

}  // namespace cirrovane

template <>
struct std::hash<cirrovane::UUID> {
  std::size_t operator()(const cirrovane::UUID& id) const noexcept {
    return std::hash<std::string_view>{}({reinterpret_cast<const char*>(id.bytes().data()), id.bytes().size()});
  }
};
