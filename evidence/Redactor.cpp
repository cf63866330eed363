#include "evidence/Redactor.h"

#include "evidence/KnownTexts.h"
#include "stores/IncidentStore.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace cirrovane {
namespace {

/// The text without the white space that a tool may print after its words.
std::string_view withoutEnd(std::string_view text, const KnownFinding& known) {
  return known.isToolsOwn ? text.substr(0, text.find_last_not_of(" \t\r\n") + 1) : text;
}

constexpr auto kThermalStates = std::to_array<std::string_view>({"Nominal", "Fair", "Serious", "Critical", "Unknown"});

}  // namespace

void Redactor::redactName(std::string& name) {
  made_.clear();
  pseudonyms_.appendName(name, made_);
  name = made_;
}

void Redactor::redactPath(std::string& path) {
  made_.clear();
  pseudonyms_.appendPath(path, made_);
  path = made_;
}

/// Puts the pseudonym in the place of the name.
void Redactor::rewrite(const NameFound& found, std::string& text) {
  if (found.place == NamePlace::none) {
    return;
  }
  made_ = found.before;
  switch (found.place) {
    case NamePlace::path:
      pseudonyms_.appendPath(found.name, made_);
      break;
    case NamePlace::relativePath:
      pseudonyms_.appendComponents(found.name, made_);
      break;
    case NamePlace::name:
    case NamePlace::none:
      pseudonyms_.appendName(found.name, made_);
      break;
  }
  made_ += found.after;
  text = made_;
}

void Redactor::redactKnown(std::span<const KnownText> known, std::string& text) {
  for (const KnownText& entry : known) {
    if (const auto found = findName(entry, text)) {
      rewrite(*found, text);
      return;
    }
  }
  text = kWithheld;
}

void Redactor::redactSystemWords(std::string& words) {
  const auto found = isStrict_ ? std::nullopt : findNameInSystemWords(words);
  if (found) {
    rewrite(*found, words);
  } else {
    words = kWithheld;
  }
}

void Redactor::redactFinding(std::string& title, std::string& detail) {
  bool isTitleKnown = false;
  for (const KnownFinding& known : knownFindings()) {
    if (known.title != title) {
      continue;
    }
    isTitleKnown = true;
    const auto found = known.isToolsOwn && isStrict_ ? std::nullopt : findName(known.detail, withoutEnd(detail, known));
    if (found) {
      rewrite(*found, detail);
      return;
    }
  }
  if (!isTitleKnown) {
    title = kWithheld;
  }
  detail = kWithheld;
}

void Redactor::redact(SyncBlocker& blocker) {
  redactPath(blocker.filePath);
  redactName(blocker.folderName);
  if (blocker.reason == BlockerReason::uploadError || blocker.reason == BlockerReason::downloadError) {
    redactSystemWords(blocker.details);
  } else {
    redactKnown(knownDetails(blocker.reason), blocker.details);
  }
}

void Redactor::redact(FolderHealth& health) {
  redactPath(health.folder.path);
  redactName(health.folder.name);
}

void Redactor::redact(RecommendedAction& action) {
  const auto known = knownActions();
  if (std::ranges::none_of(known, [&](const KnownAction& entry) {
        return entry.title == action.title && entry.detail == action.detail;
      })) {
    action.title = kWithheld;
    action.detail = kWithheld;
  }
}

void Redactor::redact(ScanSnapshot& snapshot) {
  if (snapshot.topBlockerFilePath) {
    redactPath(*snapshot.topBlockerFilePath);
  }
  if (snapshot.topBlockerFolderName) {
    redactName(*snapshot.topBlockerFolderName);
  }
}

void Redactor::redact(DiagnosticFinding& finding) {
  redactFinding(finding.title, finding.detail);
}

void Redactor::redact(IncidentRecord& incident) {
  redactFinding(incident.title, incident.lastDetail);
  incident.fingerprint = fingerprintOf(FindingKey{incident.domain, incident.title});
}

void Redactor::redact(SystemStatusSnapshot& status) {
  if (std::ranges::find(kThermalStates, status.thermalState) == kThermalStates.end()) {
    status.thermalState = "Unknown";
  }
}

void Redactor::redactSummary(std::string& summary) {
  redactKnown(knownSummaries(), summary);
}

}  // namespace cirrovane
