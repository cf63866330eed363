#pragma once

#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "base/Published.h"
#include "stores/StoreFile.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane {

/// A published list of records and the JSON file that holds it. A missing or unreadable file is an empty list.
template <JSONRecord Record>
class StoredList {
 public:
  explicit StoredList(StoreFile file) : file_(std::move(file)) {
    const std::optional<std::string> text = file_.load();
    if (!text) {
      return;
    }
    if (auto records = decodeJSON<std::vector<Record>>(*text)) {
      records_.set(std::move(*records));
    } else {
      file_.markUnreadable();
    }
  }

  const std::vector<Record>& value() const { return records_.value(); }
  const Published<std::vector<Record>>& published() const { return records_; }

  /// Publishes the list as it is to be, and saves it.
  void replace(std::vector<Record> records) {
    records_.set(std::move(records));
    file_.save([this](const ByteSink& sink) {
      JSONWriter writer(sink);
      writer.write(records_.value());
      return writer.finish() && sink("\n");
    });
  }

  const std::optional<Failure>& saveFailure() const { return file_.saveFailure(); }

 private:
  StoreFile file_;
  Published<std::vector<Record>> records_;
};

}  // namespace cirrovane
