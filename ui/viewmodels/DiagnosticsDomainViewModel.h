#pragma once

#include "diagnostics/DiagnosticFinding.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A finding in words.
struct FindingRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QString severity MEMBER severity)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)

 public:
  QString title;
  QString detail;
  QString severity;
  Tone tone = Tone::Plain;

  friend bool operator==(const FindingRow&, const FindingRow&) = default;
  /// Each refresh gives a finding a new identifier, and the same title.
  friend const QString& keyOf(const FindingRow& row) { return row.title; }
};

/// The findings of one domain, in the order of the latest refresh.
class DiagnosticsDomainViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString domain READ domain WRITE setDomain NOTIFY changed REQUIRED)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString lastUpdated READ lastUpdated NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* findings READ findings CONSTANT)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  /// The domain's raw value: "Finder". setDomain() ignores an unknown one.
  QString domain() const;
  void setDomain(const QString& domain);

  /// "Finder Diagnostics".
  QString title() const;
  /// Time of day, or "Not yet".
  QString lastUpdated() const;
  ListModel<FindingRow>* findings() { return &findings_; }
  bool isEmpty() const { return findings_.count() == 0; }

 protected:
  void begin() override;
  void update() override;

 private:
  DiagnosticDomain domain_ = DiagnosticDomain::iCloud;
  ListModel<FindingRow> findings_;
};

}  // namespace cirrovane
