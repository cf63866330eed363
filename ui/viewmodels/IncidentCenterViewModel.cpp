#include "ui/viewmodels/IncidentCenterViewModel.h"

#include "ui/viewmodels/SaveFailureText.h"
#include "ui/viewmodels/Text.h"

#include <algorithm>
#include <iterator>

namespace cirrovane {
namespace {

template <class Choices>
std::vector<ChoiceRow> choicesOf(const Choices& choices) {
  std::vector<ChoiceRow> rows;
  rows.reserve(choices.size());
  for (const auto& choice : choices) {
    rows.push_back({.value = toQString(choice.rawValue), .title = toQString(choice.title)});
  }
  return rows;
}

}  // namespace

IncidentCenterViewModel::IncidentCenterViewModel(QObject* parent)
    : PageViewModel(parent),
      incidents_([this](const IncidentRecord& record) { return incidentRow(record, context()->timeText()); }) {
  scopes_.setRows(choicesOf(kIncidentScopes));
  severityFilters_.setRows(choicesOf(kIncidentSeverityFilters));
}

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

QString IncidentCenterViewModel::notificationNote() const {
  const NotificationPermission* permission = missingPermission();
  return permission != nullptr ? permission->note() : QString();
}

QString IncidentCenterViewModel::notificationAction() const {
  const NotificationPermission* permission = missingPermission();
  return permission != nullptr ? permission->action() : QString();
}

void IncidentCenterViewModel::allowNotifications() {
  if (NotificationPermission* permission = missingPermission()) {
    permission->act();
  }
}

NotificationPermission* IncidentCenterViewModel::missingPermission() const {
  return notificationsEnabled() ? context()->settings(For<IncidentCenterViewModel>()).notificationPermission()
                                : nullptr;
}

QString IncidentCenterViewModel::scope() const {
  return toQString(rawValue(filter_.scope));
}

void IncidentCenterViewModel::setScope(const QString& scope) {
  choose(filter_.scope, scope);
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
  const IncidentRecord* shown = incidents_.find(row);
  if (shown == nullptr) {
    return;
  }
  context()->dashboard(For<IncidentCenterViewModel>()).toggleResolved(IncidentRecord(*shown));
  updateNow();
}

void IncidentCenterViewModel::begin() {
  follow(dashboard().publishedIncidents());
  AppSettings& settings = context()->settings(For<IncidentCenterViewModel>());
  connect(&settings, &AppSettings::notificationsEnabledChanged, this, &PageViewModel::changed);
  if (NotificationPermission* permission = settings.notificationPermission()) {
    connect(permission, &NotificationPermission::changed, this, &PageViewModel::changed);
    permission->reread();
  }
}

void IncidentCenterViewModel::update() {
  incidents_.setRows(keptRecords());
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
