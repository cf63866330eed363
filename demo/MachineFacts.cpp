#include "demo/MachineFacts.h"

#include "base/MacRootFacts.h"
#include "demo/AtomicFile.h"
#include "demo/Failure.h"
#include "demo/FileContent.h"
#include "demo/Text.h"

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

using Json = nlohmann::ordered_json;

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
  const std::optional<std::string> text = fileContent(path);
  if (!text) {
    throw CouldNot("There is no " + printable(path.native()) + " to change. Make a demo Mac with \"create\" first.");
  }
  Json facts = Json::parse(*text, nullptr, /*allow_exceptions=*/false);
  if (!facts.is_object()) {
    throw CouldNot(printable(path.native()) + " is not a JSON object. Mend it, or make the Mac again with \"create\".");
  }
  return facts;
}

/// For one who may leave out the quotes of a JSON text, since a path needs none in a shell.
std::string wanted(FactKind kind) {
  return std::string(wordsFor(kind)) + (kind == FactKind::absolutePath ? " as a text" : "");
}

}  // namespace

std::optional<std::string> complaintAbout(std::string_view key, const Json& value) {
  const MacRootFact* fact = findMacRootFact(key);
  if (fact == nullptr) {
    return '"' + printable(key) + R"(" is no fact of a machine. "fact --help" lists those there are.)";
  }
  if (value.is_null() || isOfKind(value, fact->kind)) {
    return std::nullopt;
  }
  return std::string(key) + " must be " + wanted(fact->kind) + ", or null to remove it; for example " +
         std::string(fact->example) + ".";
}

Json sampleFacts() {
  return Json::parse(kSampleFacts);
}

std::filesystem::path factsPath(const std::filesystem::path& root) {
  return root / kMacRootFactsFile;
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
