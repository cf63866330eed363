#include "demo/MachineFacts.h"

#include "demo/AtomicFile.h"
#include "demo/Failure.h"
#include "demo/Text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

using Json = nlohmann::ordered_json;

bool isPath(const Json& value) {
  return value.is_string() && value.get_ref<const std::string&>().starts_with('/');
}
bool isText(const Json& value) {
  return value.is_string();
}
bool isNumber(const Json& value) {
  return value.is_number();
}
bool isBoolean(const Json& value) {
  return value.is_boolean();
}
bool isObject(const Json& value) {
  return value.is_object();
}
bool isListOfTexts(const Json& value) {
  return value.is_array() && std::ranges::all_of(value, isText);
}
bool isListOfNumbers(const Json& value) {
  return value.is_array() && std::ranges::all_of(value, isNumber);
}
bool isListOfObjects(const Json& value) {
  return value.is_array() && std::ranges::all_of(value, isObject);
}

constexpr std::array<FactKey, 13> kFactKeys = {{
    {"home", isPath, "an absolute path as a text", R"("/Users/demo")"},
    {"bundle", isObject, "an object", R"({"path": "/Applications/Cirrovane.app"})"},
    {"environment", isObject, "an object", R"({"PATH": "/usr/bin:/bin"})"},
    {"ubiquityIdentityToken", isBoolean, "true or false", "false (signed out of iCloud)"},
    {"runningApplications", isListOfTexts, "a list of texts", R"(["com.apple.finder"])"},
    {"volume", isObject, "an object", R"({"availableForImportantUsage": 900000000, "total": 494384795648})"},
    {"powerSources", isListOfObjects, "a list of objects",
     R"([{"Current Capacity": 8, "Max Capacity": 100, "Is Charging": false}])"},
    {"lowPowerMode", isBoolean, "true or false", "true"},
    {"thermalState", isText, "a text", R"("serious" (or "nominal", "fair", "critical"))"},
    {"loadAverages", isListOfNumbers, "a list of numbers", "[9.5, 7.2, 4.1]"},
    {"physicalMemory", isNumber, "a number", "17179869184"},
    {"uptimeSeconds", isNumber, "a number", "273600"},
    {"notificationAuthorization", isText, "a text", R"("denied" (or "notDetermined", "authorized"))"},
}};

constexpr const char* kSampleFacts = R"({
  "home": "/Users/demo",
  "bundle": {
    "path": "/Applications/Cirrovane.app",
    "info": {"CFBundleShortVersionString": "1.2", "CFBundleVersion": "45"}
  },
  "environment": {"PATH": "/usr/bin:/bin:/usr/sbin:/sbin"},
  "ubiquityIdentityToken": true,
  "runningApplications": ["com.apple.finder"],
  "volume": {"availableForImportantUsage": 212500000000, "total": 494384795648},
  "powerSources": [{"Current Capacity": 87, "Max Capacity": 100, "Is Charging": true}],
  "lowPowerMode": false,
  "thermalState": "nominal",
  "loadAverages": [1.52, 1.31, 1.2],
  "physicalMemory": 17179869184,
  "uptimeSeconds": 273600,
  "notificationAuthorization": "notDetermined"
})";

Json readFacts(const std::filesystem::path& root) {
  const std::filesystem::path path = factsPath(root);
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw CouldNot("There is no " + printable(path.native()) + " to change. Make a demo Mac with \"create\" first.");
  }
  Json facts = Json::parse(std::string(std::istreambuf_iterator<char>(file), {}), nullptr, false);
  if (!facts.is_object()) {
    throw CouldNot(printable(path.native()) + " is not a JSON object. Mend it, or make the Mac again with \"create\".");
  }
  return facts;
}

}  // namespace

std::span<const FactKey> factKeys() {
  return kFactKeys;
}

std::optional<std::string> complaintAbout(std::string_view name, const Json& value) {
  const auto* key = std::ranges::find(kFactKeys, name, &FactKey::name);
  if (key == kFactKeys.end()) {
    return '"' + printable(name) + R"(" is no fact of a machine. "fact --help" lists those there are.)";
  }
  if (value.is_null() || key->accepts(value)) {
    return std::nullopt;
  }
  return std::string(name) + " must be " + std::string(key->wanted) + ", or null to remove it; for example " +
         std::string(key->example) + ".";
}

Json sampleFacts() {
  return Json::parse(kSampleFacts);
}

std::filesystem::path factsPath(const std::filesystem::path& root) {
  return root / "machine.json";
}

void setFact(const std::filesystem::path& root, const std::string& key, const Json& value) {
  Json facts = readFacts(root);
  if (value.is_null()) {
    facts.erase(key);
  } else {
    facts[key] = value;
  }
  writeFacts(root, facts);
}

void writeFacts(const std::filesystem::path& root, const Json& facts) {
  writeAtomically(factsPath(root), facts.dump(2) + "\n", kPublicFile);
}

}  // namespace cirrovane::demo
