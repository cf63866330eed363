#pragma once

#include "core/UUID.h"
#include "diagnostics/DiagnosticFinding.h"
#include "platform/Clock.h"

#include <string>
#include <utility>
#include <vector>

namespace cirrovane {

/// What is to be said of a matter.
struct Judgement {
  DiagnosticSeverity severity = DiagnosticSeverity::info;
  std::string detail;
};

/// Findings of one domain in the making, in the order in which they are added.
class FindingList {
 public:
  FindingList(DiagnosticDomain domain, const Clock& clock) : domain_(domain), clock_(clock) {}

  void add(DiagnosticSeverity severity, std::string title, std::string detail) {
    findings_.push_back({makeID_(), domain_, severity, std::move(title), std::move(detail), clock_.now()});
  }
  void add(std::string title, Judgement judgement) {
    add(judgement.severity, std::move(title), std::move(judgement.detail));
  }

  std::vector<DiagnosticFinding> take() { return std::move(findings_); }

 private:
  DiagnosticDomain domain_;
  const Clock& clock_;
  UUIDGenerator makeID_;
  std::vector<DiagnosticFinding> findings_;
};

}  // namespace cirrovane
