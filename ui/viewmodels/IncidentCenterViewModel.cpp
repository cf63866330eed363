#include "ui/viewmodels/IncidentCenterViewModel.h"

#include "ui/viewmodels/SaveFailureText.h"
#include "ui/viewmodels/Text.h"

#include <algorithm>
#include <iterator>

namespace cirrovane {
namespace {

template <class Choices, class Field>
QStringList listOf(const Choices& choices, Field field) {
  QStringList texts;
  for (const auto& choice : choices) {
    texts.append(toQString(choice.*field));
  }
  return texts;
}

}  // namespace

QString IncidentCenterViewModel::activeCount() const {
  return context() == nullptr ? QString() : QString::number(dashboard().activeIncidentCount());
}

QString IncidentCenterViewModel::resolvedCount() const {
  return context() == nullptr ? QString() : QString::number(dashboard().resolvedIncidentCount());
}

QString IncidentCenterViewModel::recurringCount() const {
  return context() == nullptr ? QString() : QString::number(dashboard().recurringIncidentCount());
}

bool IncidentCenterViewModel::notificationsEnabled() const {
  return context() != nullptr && context()->settings(For<IncidentCenterViewModel>()).notificationsEnabled();
}

void IncidentCenterViewModel::setNotificationsEnabled(bool enabled) {
  if (context() != nullptr) {
    context()->settings(For<IncidentCenterViewModel>()).setNotificationsEnabled(enabled);
  }
}

QStringList IncidentCenterViewModel::scopes() const {
  return listOf(kIncidentScopes, &FilterChoice<IncidentScope>::rawValue);
}

QStringList IncidentCenterViewModel::scopeTitles() const {
  return listOf(kIncidentScopes, &FilterChoice<IncidentScope>::title);
}

QString IncidentCenterViewModel::scope() const {
  return toQString(rawValue(filter_.scope));
}

void IncidentCenterViewModel::setScope(const QString& scope) {
  choose(filter_.scope, scope);
}

QStringList IncidentCenterViewModel::severityFilters() const {
  return listOf(kIncidentSeverityFilters, &FilterChoice<IncidentSeverityFilter>::rawValue);
}

QStringList IncidentCenterViewModel::severityFilterTitles() const {
  return listOf(kIncidentSeverityFilters, &FilterChoice<IncidentSeverityFilter>::title);
}

QString IncidentCenterViewModel::severityFilter() const {
  return toQString(rawValue(filter_.severity));
}

void IncidentCenterViewModel::setSeverityFilter(const QString& filter) {
  choose(filter_.severity, filter);
}

QString IncidentCenterViewModel::saveFailure() const {
  return context() == nullptr ? QString() : saveFailureText("incidents", dashboard().incidentStore().saveFailure());
}

void IncidentCenterViewModel::toggleResolved(int row) {
  const IncidentRecord* shown = incidents_.recordAt(row);
  if (shown == nullptr) {
    return;
  }
  context()->dashboard(For<IncidentCenterViewModel>()).toggleResolved(IncidentRecord(*shown));
  updateNow();
}

void IncidentCenterViewModel::begin() {
  incidents_.setTimeText(context()->timeText());
  follow(dashboard().publishedIncidents());
  connect(&context()->settings(For<IncidentCenterViewModel>()), &AppSettings::notificationsEnabledChanged, this,
          &PageViewModel::changed);
}

void IncidentCenterViewModel::update() {
  incidents_.setRecords(keptRecords());
}

template <class Filter>
void IncidentCenterViewModel::choose(Filter& chosen, const QString& rawText) {
  Filter wanted = chosen;
  if (!fromRawValue(rawText.toStdString(), wanted) || wanted == chosen) {
    return;
  }
  chosen = wanted;
  if (context() != nullptr) {
    incidents_.startOver(keptRecords());
  }
  emit changed();
}

std::vector<IncidentRecord> IncidentCenterViewModel::keptRecords() const {
  std::vector<IncidentRecord> kept;
  std::ranges::copy_if(dashboard().incidents(), std::back_inserter(kept),
                       [this](const IncidentRecord& record) { return filter_.keeps(record); });
  return kept;
}

}  // namespace cirrovane
