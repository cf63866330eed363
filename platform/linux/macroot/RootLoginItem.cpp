#include "platform/linux/macroot/RootLoginItem.h"

#include "base/Path.h"
#include "platform/linux/macroot/RootBundle.h"

#include <cstddef>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

constexpr const char* kIsOnKey = "isOn";
constexpr std::size_t kLargestLoginFile = std::size_t{1} << 20U;

bool isOn(const FileStorage& storage, const std::string& path) {
  const Result<std::string> text = storage.read(path, kLargestLoginFile);
  const json item = text ? json::parse(*text, nullptr, /*allow_exceptions=*/false) : json();
  const auto found = item.is_object() ? item.find(kIsOnKey) : item.end();
  return found != item.end() && found->is_boolean() && found->get<bool>();
}

}  // namespace

Result<LoginItemState> RootLoginItem::state() const {
  if (root_.isDescribed() && !isApplicationBundle(RootBundle(root_))) {
    return Failure{"Only an installed application can be opened at login."};
  }
  if (!isOn(storage_, path())) {
    return LoginItemState::off;
  }
  return root_.loginItemApproval() == "needed" ? LoginItemState::needsApproval : LoginItemState::on;
}

std::optional<Failure> RootLoginItem::setOn(bool isOn) {
  const std::string path = this->path();
  if (auto failure = storage_.createFolders(std::string(parentPath(path)), FileAccess::asUsual)) {
    return failure;
  }
  const std::string text = json{{kIsOnKey, isOn}}.dump(2) + "\n";
  return storage_.writeAtomically(path, FileAccess::asUsual, [&](const ByteSink& sink) { return sink(text); });
}

std::string RootLoginItem::path() const {
  return root_.homeDirectory() + "/Library/LoginItems/com.quillmere.Cirrovane.json";
}

}  // namespace cirrovane
