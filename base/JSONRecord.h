#pragma once

#include "base/Time.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace cirrovane {

/// One field of a record: its JSON key, which is its name, and where it lies.
template <class Record, class Value>
struct JSONField {
  std::string_view key;
  Value Record::*member;
};
/// Written out, because Clang before 17 deduces nothing for aggregates.
template <class Record, class Value>
JSONField(std::string_view, Value Record::*) -> JSONField<Record, Value>;

/// A value whose jsonFields() lists all of its fields in declaration order. Its JSON form, in both directions, and its
/// hash follow from that one list.
template <class Type>
concept JSONRecord = requires { std::tuple_size<decltype(Type::jsonFields())>::value; };

/// An enumeration that is written as its raw value: rawValue(case) and fromRawValue(text, case&) are found by
/// argument-dependent look-up.
template <class Type>
concept RawRepresentable = std::is_enum_v<Type> && requires(Type value, Type& target) {
  { rawValue(value) } -> std::convertible_to<std::string_view>;
  { fromRawValue(std::string_view(), target) } -> std::same_as<bool>;
};

/// A raw text and the case that it stands for.
template <class Enumeration>
struct RawValue {
  Enumeration value;
  std::string_view text;
};

/// Looks a text up in an enumeration's table; false, and the target untouched, when it names no case.
template <class Enumeration, std::size_t count>
constexpr bool caseOfRawValue(const std::array<RawValue<Enumeration>, count>& table, std::string_view text,
                              Enumeration& target) {
  for (const RawValue<Enumeration>& entry : table) {
    if (entry.text == text) {
      target = entry.value;
      return true;
    }
  }
  return false;
}

/// Calls `visit` with every field of the record's type, in declaration order.
template <JSONRecord Record, class Visitor>
constexpr void forEachField(Visitor&& visit) {
  std::apply([&](const auto&... field) { (visit(field), ...); }, Record::jsonFields());
}

namespace detail {

/// The positions of a record's fields in the order of their keys.
template <JSONRecord Record>
consteval auto keyOrder() {
  constexpr auto fields = Record::jsonFields();
  constexpr std::size_t count = std::tuple_size_v<decltype(fields)>;
  const auto keys =
      std::apply([](const auto&... field) { return std::array<std::string_view, count>{field.key...}; }, fields);
  std::array<std::size_t, count> order{};
  for (std::size_t index = 0; index < count; ++index) {
    std::size_t place = index;
    for (; place > 0 && keys[index] < keys[order[place - 1]]; --place) {
      order[place] = order[place - 1];
    }
    order[place] = index;
  }
  return order;
}

template <JSONRecord Record, class Visitor, std::size_t... place>
constexpr void visitByKey(Visitor&& visit, std::index_sequence<place...>) {
  constexpr auto order = keyOrder<Record>();
  constexpr auto fields = Record::jsonFields();
  (visit(std::get<order[place]>(fields)), ...);
}

}  // namespace detail

/// Calls `visit` with every field of the record's type, in ascending order of the keys.
template <JSONRecord Record, class Visitor>
constexpr void forEachFieldByKey(Visitor&& visit) {
  detail::visitByKey<Record>(std::forward<Visitor>(visit),
                             std::make_index_sequence<std::tuple_size_v<decltype(Record::jsonFields())>>{});
}

inline std::size_t combineHashes(std::size_t first, std::size_t second) {
  return first ^ (second + 0x9E3779B97F4A7C15ULL + (first << 6U) + (first >> 2U));
}

template <class Value>
std::size_t hashValue(const Value& value) {
  return std::hash<Value>{}(value);
}

inline std::size_t hashValue(const Time& time) {
  return std::hash<Time::rep>{}(time.time_since_epoch().count());
}

template <JSONRecord Record>
std::size_t hashValue(const Record& record);

template <class Value>
std::size_t hashValue(const std::optional<Value>& value) {
  return value ? combineHashes(1, hashValue(*value)) : 0;
}

template <class Element>
std::size_t hashValue(const std::vector<Element>& elements) {
  std::size_t hash = elements.size();
  for (const Element& element : elements) {
    hash = combineHashes(hash, hashValue(element));
  }
  return hash;
}

template <JSONRecord Record>
std::size_t hashValue(const Record& record) {
  std::size_t hash = 0;
  forEachField<Record>([&](const auto& field) { hash = combineHashes(hash, hashValue(record.*field.member)); });
  return hash;
}

}  // namespace cirrovane

/// Records are hashable over all of their fields.
template <cirrovane::JSONRecord Record>
struct std::hash<Record> {
  std::size_t operator()(const Record& record) const { return cirrovane::hashValue(record); }
};
