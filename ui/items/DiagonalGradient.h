#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace cirrovane {

/// A rectangle whose colour runs from its top leading to its bottom trailing corner.
class DiagonalGradient : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor start MEMBER start_ NOTIFY changed)
  Q_PROPERTY(QColor end MEMBER end_ NOTIFY changed)

 public:
  explicit DiagonalGradient(QQuickItem* parent = nullptr);

 signals:
  void changed();

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

 private:
  QColor start_;
  QColor end_;
};

}  // namespace cirrovane
