#pragma once

#include "base/ByteSource.h"
#include "base/JSONRecord.h"
#include "base/Time.h"
#include "base/UUID.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace cirrovane {

/// Reads one JSON document from a stream, value by value, as strictly as readJSON: a document of any size costs no more
/// memory than the values that are asked for. Whatever the bytes are, it ends with a value or a failure. After a
/// failure every further call fails.
class JSONStream {
 public:
  static constexpr std::size_t kMaximumDepth = 64;
  /// The longest text, in bytes. No path comes near it.
  static constexpr std::size_t kMaximumText = std::size_t{1} << 20U;

  explicit JSONStream(ByteSource source) : source_(std::move(source)), buffer_(kBufferSize) {}

  JSONStream(const JSONStream&) = delete;
  JSONStream& operator=(const JSONStream&) = delete;

  // Each reads the value that comes next; false when there is none of that type.

  bool read(bool& target);
  bool read(std::int64_t& target);
  bool read(std::uint64_t& target);
  bool read(double& target);
  bool read(std::string& target);
  bool read(UUID& target);
  bool read(Time& target);

  template <RawRepresentable Enumeration>
  bool read(Enumeration& target) {
    return readText(scratch_) && (fromRawValue(scratch_, target) || fail("an unknown value"));
  }

  template <class Element>
  bool read(std::vector<Element>& target) {
    target.clear();
    return readArray([&] { return read(target.emplace_back()); });
  }

  /// Null stands for an absent value.
  template <class Value>
  bool read(std::optional<Value>& target) {
    target.reset();
    return isNullNext() ? skip() : read(target.emplace());
  }

  /// Keys that the record does not know are passed over, of a key that comes twice the last value holds.
  template <JSONRecord Record>
  bool read(Record& target);

  /// Calls `each`, which reads one element, until the array is over or `each` answers false.
  template <class Each>
  bool readArray(const Each& each) {
    return readItems('[', ']', [&] { return each(); });
  }
  /// Calls `each` with every key; it reads, or skips, the value.
  template <class Each>
  bool readObject(const Each& each) {
    std::string key;
    return readItems('{', '}', [&] { return readKey(key) && each(std::string_view(key)); });
  }

  /// Passes over the value that comes next, whatever it is.
  bool skip();
  /// Whether the document is over, with nothing after it.
  bool end();

  /// Why it could not go on, as words of a sentence; empty while all is well.
  const std::string& problem() const { return problem_; }
  /// Ends the reading for a reason of the caller's; always false.
  bool fail(std::string_view what);

 private:
  static constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

  template <class Item>
  bool readItems(char opening, char closing, const Item& item) {
    if (!enter(opening)) {
      return false;
    }
    for (bool isFirst = true; goesOn(closing, isFirst); isFirst = false) {
      if (!item()) {
        return false;
      }
    }
    return leave();
  }

  template <class Value>
  bool lacks(std::string_view key, Value& /*target*/) {
    return fail("“" + std::string(key) + "” is missing");
  }
  template <class Value>
  bool lacks(std::string_view /*key*/, std::optional<Value>& target) {
    target.reset();
    return true;
  }

  bool enter(char opening);
  /// Whether another item comes; the closing bracket ends the list, as does a problem.
  bool goesOn(char closing, bool isFirst);
  /// Whether the list ended as it should.
  bool leave();
  bool isNullNext();
  bool readKey(std::string& key);
  bool readText(std::string& text);
  bool readEscape(std::string& text);
  std::optional<std::uint32_t> readHexadecimal();
  bool readLiteral(std::string_view literal);
  bool readNumber();
  /// The next byte, which stays; -1 at the end.
  int peek();
  /// The same after white space.
  int peekSolid();
  bool fill();

  ByteSource source_;
  std::vector<char> buffer_;
  std::size_t position_ = 0;
  std::size_t end_ = 0;
  /// Bytes of the document before the buffer's.
  std::uint64_t before_ = 0;
  std::size_t depth_ = 0;
  bool hasBegun_ = false;
  /// A number, or a text that becomes something else.
  std::string scratch_;
  std::string problem_;
};

template <JSONRecord Record>
bool JSONStream::read(Record& target) {
  std::array<bool, std::tuple_size_v<decltype(Record::jsonFields())>> isThere{};
  const bool isRead = readObject([&](std::string_view key) {
    bool isKnown = false;
    bool isGood = true;
    std::size_t index = 0;
    forEachField<Record>([&](const auto& field) {
      if (!isKnown && field.key == key) {
        isKnown = true;
        isThere[index] = true;
        isGood = read(target.*field.member);
      }
      ++index;
    });
    return isKnown ? isGood : skip();
  });
  if (!isRead) {
    return false;
  }
  std::size_t index = 0;
  bool isComplete = true;
  forEachField<Record>([&](const auto& field) {
    if (isComplete && !isThere[index]) {
      isComplete = lacks(field.key, target.*field.member);
    }
    ++index;
  });
  return isComplete;
}

}  // namespace cirrovane
