#pragma once

#include <QObject>
#include <QtQmlIntegration>

namespace cirrovane {

/// How far something is that goes to and fro for ever, slow at both ends.
class Drift : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  using QObject::QObject;

  /// 0 at the start, 1 after `seconds`, 0 again after twice as many, and so on.
  Q_INVOKABLE static double phase(double elapsed, double seconds);
};

}  // namespace cirrovane
