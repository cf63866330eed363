#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// How opaque a disc of the radius is, once a blur of that radius has gone over it, at the distance from its centre: 0
/// to 1.
double blurredDiscOpacity(double radius, double blur, double distance);

/// A disc in one colour after a blur, drawn as what the blur would leave, without the cost of one.
class SoftOrb : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
  Q_PROPERTY(qreal diameter MEMBER diameter_ NOTIFY changed)
  Q_PROPERTY(qreal blurRadius MEMBER blurRadius_ NOTIFY changed)

 public:
  explicit SoftOrb(QQuickItem* parent = nullptr);

 signals:
  void changed();

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

 private:
  QColor color_;
  qreal diameter_ = 0;
  qreal blurRadius_ = 0;
};

}  // namespace cirrovane
