#pragma once

#include "base/JSONStream.h"
#include "stores/ProofPacket.h"

#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace cirrovane {

// A packet in parts, one after the other, whether it lies in memory or comes from a file: each list's elements, the
// report's values, and the rest. A visitor has
//   beginObject(key), endObject()      the report
//   beginList(key), endList()          a list of either
//   element(record)                    of the list that was begun
//   value(key, value)                  anything else
// and a part is over when the call is.

namespace detail {

template <class>
inline constexpr bool kIsList = false;
template <class Element>
inline constexpr bool kIsList<std::vector<Element>> = true;

template <class>
inline constexpr bool kIsShared = false;
template <class Value>
inline constexpr bool kIsShared<Shared<Value>> = true;

template <class Value, class Visitor>
void visitPart(std::string_view key, const Value& value, Visitor& visitor) {
  if constexpr (kIsShared<Value>) {
    visitor.beginObject(key);
    using Record = std::remove_cvref_t<decltype(*value)>;
    forEachFieldByKey<Record>([&](const auto& field) { visitPart(field.key, (*value).*field.member, visitor); });
    visitor.endObject();
  } else if constexpr (kIsList<Value>) {
    visitor.beginList(key);
    for (const auto& element : value) {
      visitor.element(element);
    }
    visitor.endList();
  } else {
    visitor.value(key, value);
  }
}

template <class Value, class Visitor>
bool readPart(std::string_view key, std::type_identity<Value> /*type*/, JSONStream& stream, Visitor& visitor);

/// All that an object holds, each piece of which has to be there once.
template <class Record, class Visitor>
bool readParts(JSONStream& stream, Visitor& visitor) {
  std::bitset<std::tuple_size_v<decltype(Record::jsonFields())>> isThere;
  const bool isRead = stream.readObject([&](std::string_view key) {
    bool isKnown = false;
    bool isGood = true;
    std::size_t index = 0;
    forEachField<Record>([&](const auto& field) {
      if (!isKnown && field.key == key) {
        isKnown = true;
        using Value = std::remove_cvref_t<decltype(std::declval<Record&>().*field.member)>;
        isGood = isThere[index] ? stream.fail("“" + std::string(key) + "” comes twice")
                                : readPart(field.key, std::type_identity<Value>(), stream, visitor);
        isThere.set(index);
      }
      ++index;
    });
    return isKnown ? isGood : stream.skip();
  });
  if (isRead && !isThere.all()) {
    std::size_t index = 0;
    forEachField<Record>([&](const auto& field) {
      if (!isThere[index]) {
        stream.fail("“" + std::string(field.key) + "” is missing");
      }
      ++index;
    });
  }
  return isRead && isThere.all();
}

template <class Value, class Visitor>
bool readPart(std::string_view key, std::type_identity<Value> /*type*/, JSONStream& stream, Visitor& visitor) {
  if constexpr (kIsShared<Value>) {
    visitor.beginObject(key);
    const bool isRead = readParts<std::remove_cvref_t<decltype(*std::declval<Value>())>>(stream, visitor);
    visitor.endObject();
    return isRead;
  } else if constexpr (kIsList<Value>) {
    visitor.beginList(key);
    typename Value::value_type element;
    const bool isRead = stream.readArray([&] {
      const bool isGood = stream.read(element);
      if (isGood) {
        visitor.element(element);
      }
      return isGood;
    });
    visitor.endList();
    return isRead;
  } else {
    Value value{};
    const bool isRead = stream.read(value);
    if (isRead) {
      visitor.value(key, value);
    }
    return isRead;
  }
}

}  // namespace detail

/// Shows a visitor all that a packet holds, in the order of their keys.
template <class Visitor>
void visitParts(const ProofPacket& packet, Visitor& visitor) {
  forEachFieldByKey<ProofPacket>(
      [&](const auto& field) { detail::visitPart(field.key, packet.*field.member, visitor); });
}

/// The same of a packet that somebody may have sent, in the order in which they come; false when it is none, whose
/// reason the stream knows.
template <class Visitor>
bool readParts(JSONStream& stream, Visitor& visitor) {
  return detail::readParts<ProofPacket>(stream, visitor) && stream.end();
}

}  // namespace cirrovane
