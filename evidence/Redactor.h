#pragma once

#include "core/SyncHealthReport.h"
#include "diagnostics/DiagnosticFinding.h"
#include "diagnostics/SystemStatusSnapshot.h"
#include "evidence/KnownTexts.h"
#include "evidence/Pseudonyms.h"
#include "evidence/Redaction.h"
#include "stores/IncidentRecord.h"
#include "stores/ScanSnapshot.h"

#include <span>
#include <string>
#include <utility>

namespace cirrovane {

/// Takes the names out of a packet's records, each in the order in which the packet holds them. Whatever a record says
/// besides stays. Two packets that differ in nothing but names come out the same.
class Redactor {
 public:
  /// With the home folder of whoever the packet is about, where it is known.
  Redactor(Redaction redaction, std::string home)
      : isStrict_(redaction == Redaction::strict), pseudonyms_(!isStrict_, std::move(home)) {}

  void redact(SyncBlocker& blocker);
  void redact(FolderHealth& health);
  static void redact(RecommendedAction& action);
  void redact(ScanSnapshot& snapshot);
  void redact(DiagnosticFinding& finding);
  void redact(IncidentRecord& incident);
  static void redact(SystemStatusSnapshot& status);
  /// The report in one sentence.
  void redactSummary(std::string& summary);

 private:
  void redactName(std::string& name);
  void redactPath(std::string& path);
  void rewrite(const NameFound& found, std::string& text);
  void redactKnown(std::span<const KnownText> known, std::string& text);
  void redactFinding(std::string& title, std::string& detail);
  void redactSystemWords(std::string& words);

  bool isStrict_;
  Pseudonyms pseudonyms_;
  /// Kept for its memory.
  std::string made_;
};

}  // namespace cirrovane
