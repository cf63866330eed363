#include "ui/items/ColourMesh.h"

#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>
#include <algorithm>
#include <cmath>
#include <cstddef>

namespace cirrovane {
namespace {

uchar channel(float value, float alpha) {
  return static_cast<uchar>(std::lround(value * alpha * 255));
}

QSGGeometryNode* makeNode() {
  auto* node = new QSGGeometryNode;
  auto* geometry = new QSGGeometry(QSGGeometry::defaultAttributes_ColoredPoint2D(), 0);
  geometry->setDrawingMode(QSGGeometry::DrawTriangles);
  node->setGeometry(geometry);
  auto* material = new QSGVertexColorMaterial;
  material->setFlag(QSGMaterial::Blending);
  node->setMaterial(material);
  node->setFlags(QSGNode::OwnsGeometry | QSGNode::OwnsMaterial);
  return node;
}

}  // namespace

double diagonalShare(const QSizeF& area, const QPointF& point) {
  const double length = area.width() * area.width() + area.height() * area.height();
  const double along = point.x() * area.width() + point.y() * area.height();
  return length > 0 ? std::clamp(along / length, 0.0, 1.0) : 0;
}

QColor between(const QColor& first, const QColor& second, double share) {
  const auto mix = [&](float from, float to) { return from + (to - from) * static_cast<float>(share); };
  return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                          mix(first.blueF(), second.blueF()), mix(first.alphaF(), second.alphaF()));
}

void addBand(ColourMesh& mesh, const std::vector<MeshVertex>& first, const std::vector<MeshVertex>& second) {
  for (std::size_t index = 0; index + 1 < std::min(first.size(), second.size()); ++index) {
    mesh.insert(mesh.end(), {first[index], second[index], first[index + 1]});
    mesh.insert(mesh.end(), {first[index + 1], second[index], second[index + 1]});
  }
}

QSGNode* updateMeshNode(QSGNode* node, const ColourMesh& mesh) {
  auto* geometryNode = node != nullptr ? dynamic_cast<QSGGeometryNode*>(node) : makeNode();
  QSGGeometry* geometry = geometryNode->geometry();
  geometry->allocate(static_cast<int>(mesh.size()));
  QSGGeometry::ColoredPoint2D* target = geometry->vertexDataAsColoredPoint2D();
  for (const MeshVertex& vertex : mesh) {
    const float alpha = vertex.colour.alphaF();
    target->set(static_cast<float>(vertex.place.x()), static_cast<float>(vertex.place.y()),
                channel(vertex.colour.redF(), alpha), channel(vertex.colour.greenF(), alpha),
                channel(vertex.colour.blueF(), alpha), channel(1, alpha));
    ++target;
  }
  geometryNode->markDirty(QSGNode::DirtyGeometry);
  return geometryNode;
}

}  // namespace cirrovane
