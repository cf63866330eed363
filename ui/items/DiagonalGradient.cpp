#include "ui/items/DiagonalGradient.h"

#include "ui/items/ColourMesh.h"

namespace cirrovane {

DiagonalGradient::DiagonalGradient(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  connect(this, &DiagonalGradient::changed, this, &QQuickItem::update);
}

QSGNode* DiagonalGradient::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  const auto corner = [&](double x, double y) {
    const QPointF place(x, y);
    return MeshVertex{place, between(start_, end_, diagonalShare(size(), place))};
  };
  ColourMesh mesh;
  addBand(mesh, {corner(0, 0), corner(width(), 0)}, {corner(0, height()), corner(width(), height())});
  return updateMeshNode(node, mesh);
}

}  // namespace cirrovane
