#pragma once

#include "stores/IncidentFilter.h"
#include "ui/viewmodels/ChoiceRow.h"
#include "ui/viewmodels/IncidentRow.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// The coordinator's incidents. Two filters keep a part of them.
class IncidentCenterViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString activeCount READ activeCount NOTIFY changed)
  Q_PROPERTY(QString resolvedCount READ resolvedCount NOTIFY changed)
  Q_PROPERTY(QString recurringCount READ recurringCount NOTIFY changed)
  Q_PROPERTY(bool notificationsEnabled READ notificationsEnabled WRITE setNotificationsEnabled NOTIFY changed)
  Q_PROPERTY(QString notificationNote READ notificationNote NOTIFY changed)
  Q_PROPERTY(QString notificationAction READ notificationAction NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* scopes READ scopes CONSTANT)
  Q_PROPERTY(QString scope READ scope WRITE setScope NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* severityFilters READ severityFilters CONSTANT)
  Q_PROPERTY(QString severityFilter READ severityFilter WRITE setSeverityFilter NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* incidents READ incidents CONSTANT)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)

 public:
  explicit IncidentCenterViewModel(QObject* parent = nullptr);

  // These count all incidents, whatever the filters keep.
  QString activeCount() const;
  QString resolvedCount() const;
  QString recurringCount() const;

  bool notificationsEnabled() const;
  void setNotificationsEnabled(bool enabled);
  /// Why the system shows none though they are switched on, and what allowNotifications() does about it; empty
  /// otherwise.
  QString notificationNote() const;
  QString notificationAction() const;
  Q_INVOKABLE void allowNotifications();

  // A filter takes the value of one of its choices, and ignores any other text.

  ListModel<ChoiceRow>* scopes() { return &scopes_; }
  QString scope() const;
  void setScope(const QString& scope);
  ListModel<ChoiceRow>* severityFilters() { return &severityFilters_; }
  QString severityFilter() const;
  void setSeverityFilter(const QString& filter);

  /// The incidents that both filters keep.
  ListModel<IncidentRow, IncidentRecord>* incidents() { return &incidents_; }
  bool isEmpty() const { return incidents_.count() == 0; }

  /// Why the latest change is not on the disk; empty when it is.
  QString saveFailure() const;

  /// Resolves a row's incident, or reopens it. The row keeps its place until the next refresh.
  Q_INVOKABLE void toggleResolved(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  /// What keeps the notifications from being shown though they are switched on; nullptr where nothing is known to.
  NotificationPermission* missingPermission() const;
  template <class Filter>
  void choose(Filter& chosen, const QString& rawText);
  std::vector<IncidentRecord> keptRecords() const;

  IncidentFilter filter_;
  ListModel<ChoiceRow> scopes_;
  ListModel<ChoiceRow> severityFilters_;
  ListModel<IncidentRow, IncidentRecord> incidents_;
};

}  // namespace cirrovane
