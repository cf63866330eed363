#pragma once

#include "base/ByteSink.h"
#include "base/ISO8601.h"
#include "base/JSONRecord.h"
#include "base/UUID.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

template <class Value>
class Shared;

/// How a JSON document stands on the page: the form of files and answers, or one line, for a stream of documents.
enum class JSONLayout : std::uint8_t { pretty, line };

/// Writes the one JSON form of everything that leaves the program: two spaces a level, dates as ISO 8601, an invalid
/// UTF-8 sequence as U+FFFD. It streams, so that a large report costs no second copy of itself in memory. Records come
/// out with their keys sorted.
class JSONWriter {
 public:
  explicit JSONWriter(ByteSink sink, JSONLayout layout = JSONLayout::pretty) : sink_(std::move(sink)), layout_(layout) {
    buffer_.reserve(kFlushSize + kFlushSize / 4);
  }

  JSONWriter(const JSONWriter&) = delete;
  JSONWriter& operator=(const JSONWriter&) = delete;

  void beginObject() { open('{'); }
  void endObject() { close('}'); }
  void beginArray() { open('['); }
  void endArray() { close(']'); }
  /// The key of the value that is written next; keys must come sorted.
  void key(std::string_view text);
  /// Starts the next element of an array, before its value.
  void element() { separate(); }

  void write(bool value) { buffer_ += value ? "true" : "false"; }
  void write(std::int64_t value);
  void write(std::uint64_t value);
  void write(double value);
  void write(std::string_view text);
  void write(const std::string& text) { write(std::string_view(text)); }
  void write(const char* text) { write(std::string_view(text)); }
  void write(const UUID& id) { writePlain(id.text()); }
  void write(Time time) { writePlain(iso8601Text(time)); }

  template <RawRepresentable Enumeration>
  void write(Enumeration value) {
    writePlain(rawValue(value));
  }

  template <class Element>
  void write(const std::vector<Element>& elements) {
    beginArray();
    for (const Element& entry : elements) {
      element();
      write(entry);
    }
    endArray();
  }

  template <class Value>
  void write(const Shared<Value>& shared) {
    write(*shared);
  }

  template <JSONRecord Record>
  void write(const Record& record) {
    beginObject();
    forEachFieldByKey<Record>([&](const auto& field) { writeMember(field.key, record.*field.member); });
    endObject();
  }

  /// Hands everything written so far to the sink; false once the sink has refused anything.
  bool finish();

 private:
  static constexpr std::size_t kFlushSize = std::size_t{64} * 1024;

  /// A field's name, which needs no escapes, with its value; nothing at all for an absent optional.
  template <class Value>
  void writeMember(std::string_view name, const Value& value) {
    separate();
    writePlain(name);
    buffer_ += ": ";
    write(value);
  }
  template <class Value>
  void writeMember(std::string_view name, const std::optional<Value>& value) {
    if (value) {
      writeMember(name, *value);
    }
  }

  void open(char bracket);
  void close(char bracket);
  void separate();
  void startLine();
  void writePlain(std::string_view text);
  void flush();

  ByteSink sink_;
  JSONLayout layout_;
  std::string buffer_;
  std::size_t depth_ = 0;
  bool isFirst_ = true;
  bool hasFailed_ = false;
};

/// The JSON form of a value as one text, without a line end after it.
template <class Value>
std::string encodeJSON(const Value& value) {
  std::string text;
  JSONWriter writer([&](std::string_view piece) {
    text += piece;
    return true;
  });
  writer.write(value);
  writer.finish();
  return text;
}

}  // namespace cirrovane
