#pragma once

#include "ui/items/ColourMesh.h"

#include <QColor>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace cirrovane {

/// A rounded rectangle with a fill and an outline of one point, whose colour runs from the top leading to the bottom
/// trailing corner.
class CardOutline : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY changed)
  Q_PROPERTY(QColor fill MEMBER fill_ NOTIFY changed)
  Q_PROPERTY(QColor outlineStart MEMBER outlineStart_ NOTIFY changed)
  Q_PROPERTY(QColor outlineEnd MEMBER outlineEnd_ NOTIFY changed)

 public:
  explicit CardOutline(QQuickItem* parent = nullptr);

 signals:
  void changed();

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

 private:
  class Pieces;

  ColourMesh mesh() const;

  qreal radius_ = 0;
  QColor fill_;
  QColor outlineStart_;
  QColor outlineEnd_;
};

}  // namespace cirrovane
