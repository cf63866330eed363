#include "ui/viewmodels/DiagnosticsDomainViewModel.h"

#include "ui/viewmodels/Severity.h"
#include "ui/viewmodels/Text.h"

#include <optional>
#include <utility>
#include <vector>

namespace cirrovane {

DiagnosticsDomainViewModel::DiagnosticsDomainViewModel(QObject* parent)
    : PageViewModel(parent), findings_({"title", "detail", "severityTitle", "severityLevel"}) {}

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
  return time ? toQString(context()->timeText().timeOfDay(*time)) : QStringLiteral("Not yet");
}

void DiagnosticsDomainViewModel::begin() {
  follow(dashboard().publishedDiagnostics());
  follow(dashboard().publishedDiagnosticsUpdatedAt());
}

void DiagnosticsDomainViewModel::update() {
  std::vector<RowListModel::Row> rows;
  for (const DiagnosticFinding& finding : dashboard().diagnostics(domain_)) {
    const QString title = toDisplay(finding.title);
    // Its identifier is another at every refresh; its title is not.
    rows.push_back(
        {title,
         {title, toDisplayOutput(finding.detail), severityTitle(finding.severity), severityLevel(finding.severity)}});
  }
  findings_.setRows(std::move(rows));
}

}  // namespace cirrovane
