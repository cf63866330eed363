#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration>

namespace cirrovane {

/// The terminology guide for the screen: sections with a title and their terms.
class TerminologyModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QVariantList sections READ sections CONSTANT)

 public:
  using QObject::QObject;

  QVariantList sections() const;
};

}  // namespace cirrovane
