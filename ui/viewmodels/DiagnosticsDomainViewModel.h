#pragma once

#include "diagnostics/DiagnosticFinding.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The findings of one domain, in the order in which the latest refresh presents them.
class DiagnosticsDomainViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString domain READ domain WRITE setDomain NOTIFY changed REQUIRED)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString lastUpdated READ lastUpdated NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* findings READ findings CONSTANT)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)

 public:
  explicit DiagnosticsDomainViewModel(QObject* parent = nullptr);

  /// The domain's raw value, "Finder"; one that is not known leaves the domain as it is.
  QString domain() const;
  void setDomain(const QString& domain);

  /// "Finder Diagnostics".
  QString title() const;
  /// Time of day, or "Not yet".
  QString lastUpdated() const;
  RowListModel* findings() { return &findings_; }
  bool isEmpty() const { return findings_.rowCount() == 0; }

 protected:
  void begin() override;
  void update() override;

 private:
  DiagnosticDomain domain_ = DiagnosticDomain::iCloud;
  RowListModel findings_;
};

}  // namespace cirrovane
