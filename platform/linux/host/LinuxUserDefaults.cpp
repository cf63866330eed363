#include "platform/linux/host/LinuxUserDefaults.h"

#include "base/Path.h"

#include <cstddef>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

/// A file of settings is small; anything above this is none of ours.
constexpr std::size_t kLargestFile = std::size_t{1} << 20U;

/// All settings; an empty object when there are none or the file is not what we wrote.
json readAll(const FileStorage& storage, const std::string& path) {
  const Result<std::string> text = storage.read(path, kLargestFile);
  json all = text ? json::parse(*text, nullptr, /*allow_exceptions=*/false) : json();
  return all.is_object() ? all : json::object();
}

}  // namespace

std::optional<DefaultsValue> LinuxUserDefaults::value(std::string_view key) const {
  const json all = readAll(storage_, path());
  const auto found = all.find(key);
  if (found == all.end() || found->is_null()) {
    return std::nullopt;
  }
  if (found->is_boolean()) {
    return DefaultsValue(found->get<bool>());
  }
  if (found->is_number()) {
    return DefaultsValue(found->get<double>());
  }
  if (found->is_string()) {
    return DefaultsValue(found->get<std::string>());
  }
  return DefaultsValue(OtherDefaultsValue());
}

std::optional<Failure> LinuxUserDefaults::set(std::string_view key, bool value) {
  return store(key, value);
}

std::optional<Failure> LinuxUserDefaults::set(std::string_view key, const std::string& value) {
  return store(key, value);
}

std::string LinuxUserDefaults::path() const {
  return folder_() + "/com.quillmere.Cirrovane.json";
}

template <class Value>
std::optional<Failure> LinuxUserDefaults::store(std::string_view key, const Value& value) {
  const std::string path = this->path();
  json all = readAll(storage_, path);
  all[std::string(key)] = value;
  if (auto failure = storage_.createFolders(std::string(parentPath(path)), FileAccess::asUsual)) {
    return failure;
  }
  const std::string text = all.dump(2, ' ', /*ensure_ascii=*/false, json::error_handler_t::replace) + "\n";
  return storage_.writeAtomically(path, FileAccess::privateToUser, [&](const ByteSink& sink) { return sink(text); });
}

}  // namespace cirrovane
