#pragma once

#include "base/UUID.h"
#include "diagnostics/CollectedFindings.h"
#include "diagnostics/DiagnosticFinding.h"
#include "platform/Clock.h"

#include <string>
#include <utility>

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
    collected_.findings.push_back({makeID_(), domain_, severity, std::move(title), std::move(detail), clock_.now()});
  }
  void add(std::string title, Judgement judgement) {
    add(judgement.severity, std::move(title), std::move(judgement.detail));
  }

  /// Nothing can be said of this.
  void addNotReached(std::string title) { collected_.notReached.push_back({domain_, std::move(title)}); }

  CollectedFindings take() { return std::move(collected_); }

 private:
  DiagnosticDomain domain_;
  const Clock& clock_;
  UUIDGenerator makeID_;
  CollectedFindings collected_;
};

}  // namespace cirrovane
