#include "base/UUID.h"

#include <cstring>

namespace cirrovane {
namespace {

constexpr std::size_t kTextLength = 36;

constexpr bool isDashPosition(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexDigitValue(char digit) {
  if (digit >= '0' && digit <= '9') {
    return static_cast<std::uint8_t>(digit - '0');
  }
  if (digit >= 'A' && digit <= 'F') {
    return static_cast<std::uint8_t>(digit - 'A' + 10);
  }
  if (digit >= 'a' && digit <= 'f') {
    return static_cast<std::uint8_t>(digit - 'a' + 10);
  }
  return std::nullopt;
}

}  // namespace

std::optional<UUID> UUID::fromText(std::string_view text) {
  if (text.size() != kTextLength) {
    return std::nullopt;
  }
  std::array<std::uint8_t, 16> bytes{};
  std::size_t digitCount = 0;
  for (std::size_t position = 0; position < kTextLength; ++position) {
    if (isDashPosition(position)) {
      if (text[position] != '-') {
        return std::nullopt;
      }
      continue;
    }
    const std::optional<std::uint8_t> value = hexDigitValue(text[position]);
    if (!value) {
      return std::nullopt;
    }
    std::uint8_t& byte = bytes[digitCount / 2];
    byte = static_cast<std::uint8_t>((byte << 4U) | *value);
    ++digitCount;
  }
  return UUID(bytes);
}

std::string UUID::text() const {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  text.reserve(kTextLength);
  for (const std::uint8_t byte : bytes_) {
    if (isDashPosition(text.size())) {
      text += '-';
    }
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
  return text;
}

UUIDGenerator::UUIDGenerator() {
  std::random_device device;
  std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
  random_.seed(seed);
}

UUID UUIDGenerator::operator()() {
  const std::array<std::uint64_t, 2> words{random_(), random_()};
  std::array<std::uint8_t, 16> bytes{};
  std::memcpy(bytes.data(), words.data(), bytes.size());
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
  return UUID(bytes);
}

}  // namespace cirrovane
