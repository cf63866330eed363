#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// How opaque a disc of the radius is, once a blur of that radius has gone over it, at the distance from its centre: 0
/// to 1.
double blurredDiscOpacity(double radius, double blur, double distance);

/// A disc in one colour after a blur, with its centre in the item's middle. It draws nothing itself: the gradient that
/// it lies in draws what the blur would leave, without the cost of one.
class SoftOrb : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
  Q_PROPERTY(qreal diameter MEMBER diameter_ NOTIFY changed)
  Q_PROPERTY(qreal blurRadius MEMBER blurRadius_ NOTIFY changed)

 public:
  explicit SoftOrb(QQuickItem* parent = nullptr);

  const QColor& color() const { return color_; }
  /// In the coordinates of the item that it lies in.
  QPointF centre() const;
  /// How opaque it is at the distance from its centre, without what the colour itself lets through: 0 to 1.
  double opacityAt(double distance) const;

 signals:
  void changed();

 protected:
  void componentComplete() override;

 private:
  void shape();

  QColor color_;
  qreal diameter_ = 0;
  qreal blurRadius_ = 0;
  /// At even steps from the centre to where nothing is left to see.
  std::vector<double> opacities_;
  double reach_ = 0;
};

}  // namespace cirrovane
