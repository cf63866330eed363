#pragma once

#include "ui/viewmodels/ListModel.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A word that the screens use, and what it means here.
struct TermRow {
  Q_GADGET
  Q_PROPERTY(QString term MEMBER term)
  Q_PROPERTY(QString explanation MEMBER explanation)

 public:
  QString term;
  QString explanation;

  friend bool operator==(const TermRow&, const TermRow&) = default;
  friend const QString& keyOf(const TermRow& row) { return row.term; }
};

/// A section of the guide with the list of its terms.
struct TermSectionRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(cirrovane::ListModelBase* terms MEMBER terms)

 public:
  QString title;
  /// Belongs to the guide.
  ListModelBase* terms = nullptr;

  friend bool operator==(const TermSectionRow&, const TermSectionRow&) = default;
  friend const QString& keyOf(const TermSectionRow& row) { return row.title; }
};

/// The terminology guide.
class TerminologyModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::ListModelBase* sections READ sections CONSTANT)

 public:
  explicit TerminologyModel(QObject* parent = nullptr);

  ListModel<TermSectionRow>* sections() { return &sections_; }

 private:
  ListModel<TermSectionRow> sections_;
};

}  // namespace cirrovane
