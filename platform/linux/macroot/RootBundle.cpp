#include "platform/linux/macroot/RootBundle.h"

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

std::optional<std::string> textMember(const json& object, std::string_view key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
}

}  // namespace

std::string RootBundle::location() const {
  return textMember(root_.facts().value("bundle", json::object()), "path").value_or("");
}

std::optional<std::string> RootBundle::infoText(std::string_view key) const {
  const json bundle = root_.facts().value("bundle", json::object());
  const auto info = bundle.find("info");
  return info != bundle.end() && info->is_object() ? textMember(*info, key) : std::nullopt;
}

}  // namespace cirrovane
