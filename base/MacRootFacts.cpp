#include "base/MacRootFacts.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

constexpr std::array<MacRootFact, 14> kFacts = {{
    {"home", FactKind::absolutePath, R"("/Users/demo")"},
    {"bundle", FactKind::object, R"({"path": "/Applications/Cirrovane.app"})"},
    {"environment", FactKind::object, R"({"PATH": "/usr/bin:/bin"})"},
    {"ubiquityIdentityToken", FactKind::boolean, "false (signed out of iCloud)"},
    {"runningApplications", FactKind::listOfTexts, R"(["com.apple.finder"])"},
    {"volume", FactKind::object, R"({"availableForImportantUsage": 900000000, "total": 494384795648})"},
    {"powerSources", FactKind::listOfObjects,
     R"([{"Current Capacity": 8, "Max Capacity": 100, "Is Charging": false}])"},
    {"lowPowerMode", FactKind::boolean, "true"},
    {"thermalState", FactKind::text, R"("serious" (or "nominal", "fair", "critical"))"},
    {"loadAverages", FactKind::listOfNumbers, "[9.5, 7.2, 4.1]"},
    {"physicalMemory", FactKind::number, "17179869184"},
    {"uptimeSeconds", FactKind::number, "273600"},
    {"notificationAuthorization", FactKind::text, R"("denied" (or "notDetermined", "authorized"))"},
    {"loginItemApproval", FactKind::text, R"("needed" (or "given"))"},
}};

template <class JSON>
bool isListOf(const JSON& value, bool (JSON::*isWanted)() const noexcept) {
  return value.is_array() && std::ranges::all_of(value, [&](const JSON& entry) { return (entry.*isWanted)(); });
}

/// For values of either order of keys.
template <class JSON>
bool isValueOfKind(const JSON& value, FactKind kind) {
  switch (kind) {
    case FactKind::absolutePath:
      return value.is_string() && value.template get_ref<const std::string&>().starts_with('/');
    case FactKind::object:
      return value.is_object();
    case FactKind::boolean:
      return value.is_boolean();
    case FactKind::text:
      return value.is_string();
    case FactKind::number:
      return value.is_number();
    case FactKind::listOfTexts:
      return isListOf(value, &JSON::is_string);
    case FactKind::listOfNumbers:
      return isListOf(value, &JSON::is_number);
    case FactKind::listOfObjects:
      return isListOf(value, &JSON::is_object);
  }
  return false;
}

}  // namespace

std::span<const MacRootFact> macRootFacts() {
  return kFacts;
}

const MacRootFact* findMacRootFact(std::string_view key) {
  const auto* found = std::ranges::find(kFacts, key, &MacRootFact::key);
  return found != kFacts.end() ? found : nullptr;
}

std::string_view wordsFor(FactKind kind) {
  switch (kind) {
    case FactKind::absolutePath:
      return "an absolute path";
    case FactKind::object:
      return "an object";
    case FactKind::boolean:
      return "true or false";
    case FactKind::text:
      return "a text";
    case FactKind::number:
      return "a number";
    case FactKind::listOfTexts:
      return "a list of texts";
    case FactKind::listOfNumbers:
      return "a list of numbers";
    case FactKind::listOfObjects:
      return "a list of objects";
  }
  return {};
}

bool isOfKind(const nlohmann::json& value, FactKind kind) {
  return isValueOfKind(value, kind);
}

bool isOfKind(const nlohmann::ordered_json& value, FactKind kind) {
  return isValueOfKind(value, kind);
}

std::optional<std::string> complaintAboutFacts(const nlohmann::json& description) {
  if (description.is_discarded()) {
    return "it is not JSON";
  }
  if (!description.is_object()) {
    return "it is not a JSON object";
  }
  for (const MacRootFact& fact : kFacts) {
    const auto found = description.find(fact.key);
    if (found != description.end() && !isOfKind(*found, fact.kind)) {
      return fmt::format("\"{}\" must be {}", fact.key, wordsFor(fact.kind));
    }
  }
  return std::nullopt;
}

}  // namespace cirrovane
