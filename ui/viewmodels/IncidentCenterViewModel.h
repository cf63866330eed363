#pragma once

#include "stores/IncidentFilter.h"
#include "ui/viewmodels/IncidentListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QStringList>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// The incidents as the coordinator has them, of which two filters keep a part.
class IncidentCenterViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString activeCount READ activeCount NOTIFY changed)
  Q_PROPERTY(QString resolvedCount READ resolvedCount NOTIFY changed)
  Q_PROPERTY(QString recurringCount READ recurringCount NOTIFY changed)
  Q_PROPERTY(bool notificationsEnabled READ notificationsEnabled WRITE setNotificationsEnabled NOTIFY changed)
  Q_PROPERTY(QStringList scopes READ scopes CONSTANT)
  Q_PROPERTY(QStringList scopeTitles READ scopeTitles CONSTANT)
  Q_PROPERTY(QString scope READ scope WRITE setScope NOTIFY changed)
  Q_PROPERTY(QStringList severityFilters READ severityFilters CONSTANT)
  Q_PROPERTY(QStringList severityFilterTitles READ severityFilterTitles CONSTANT)
  Q_PROPERTY(QString severityFilter READ severityFilter WRITE setSeverityFilter NOTIFY changed)
  Q_PROPERTY(cirrovane::IncidentListModel* incidents READ incidents CONSTANT)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  // Of all incidents, whatever the filters keep.
  QString activeCount() const;
  QString resolvedCount() const;
  QString recurringCount() const;

  bool notificationsEnabled() const;
  void setNotificationsEnabled(bool enabled);

  // Raw values and titles of the choices, in order; a filter is chosen by its raw value, and keeps what it has for any
  // other text.
  QStringList scopes() const;
  QStringList scopeTitles() const;
  QString scope() const;
  void setScope(const QString& scope);
  QStringList severityFilters() const;
  QStringList severityFilterTitles() const;
  QString severityFilter() const;
  void setSeverityFilter(const QString& filter);

  /// Those that both filters keep.
  IncidentListModel* incidents() { return &incidents_; }
  bool isEmpty() const { return incidents_.rowCount() == 0; }

  /// Why the incidents as they are now are not on the disk; empty when they are.
  QString saveFailure() const;

  /// Marks the incident of a row as resolved, or reopens it when it is. It stays in its place until the next refresh.
  Q_INVOKABLE void toggleResolved(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  template <class Filter>
  void choose(Filter& chosen, const QString& rawText);
  std::vector<IncidentRecord> keptRecords() const;

  IncidentFilter filter_;
  IncidentListModel incidents_;
};

}  // namespace cirrovane
