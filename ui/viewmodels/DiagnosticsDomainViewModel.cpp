#include "ui/viewmodels/DiagnosticsDomainViewModel.h"

#include "ui/viewmodels/Severity.h"
#include "ui/viewmodels/Text.h"

#include <optional>
#include <utility>
#include <vector>

namespace cirrovane {

QString DiagnosticsDomainViewModel::domain() const {
  return toQString(rawValue(domain_));
}

void DiagnosticsDomainViewModel::setDomain(const QString& domain) {
  DiagnosticDomain wanted = domain_;
  if (!fromRawValue(domain.toStdString(), wanted) || wanted == domain_) {
    return;
  }
  domain_ = wanted;
  if (context() != nullptr) {
    updateNow();
  } else {
    emit changed();
  }
}

QString DiagnosticsDomainViewModel::title() const {
  return domain() + QStringLiteral(" Diagnostics");
}

QString DiagnosticsDomainViewModel::lastUpdated() const {
  const std::optional<Time> time = context() == nullptr ? std::nullopt : dashboard().diagnosticsUpdatedAt();
  return time ? toQString(context()->timeText().moment(*time, dashboard().now())) : QStringLiteral("Not yet");
}

void DiagnosticsDomainViewModel::begin() {
  follow(dashboard().publishedDiagnostics());
  follow(dashboard().publishedDiagnosticsUpdatedAt());
}

void DiagnosticsDomainViewModel::update() {
  std::vector<FindingRow> rows;
  for (const DiagnosticFinding& finding : dashboard().diagnostics(domain_)) {
    rows.push_back({.title = toDisplay(finding.title),
                    .detail = toDisplayOutput(finding.detail),
                    .severity = severityTitle(finding.severity),
                    .tone = toneOf(finding.severity)});
  }
  findings_.setRows(std::move(rows));
}

}  // namespace cirrovane
