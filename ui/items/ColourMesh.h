#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <vector>

namespace cirrovane {

/// A corner of a triangle and its colour; between corners colours blend.
struct MeshVertex {
  QPointF place;
  QColor colour;
};

/// Triangles, three vertices each, that do not overlap.
using ColourMesh = std::vector<MeshVertex>;

/// How far a point lies along the way from the top leading to the bottom trailing corner: 0 to 1.
double diagonalShare(const QSizeF& area, const QPointF& point);

/// The colour that lies at a share of the way from the first to the second.
QColor between(const QColor& first, const QColor& second, double share);

/// Adds the band between two lines of as many points.
void addBand(ColourMesh& mesh, const std::vector<MeshVertex>& first, const std::vector<MeshVertex>& second);

/// What shows of a mesh in an area, `scale` pixels a point: each pixel as its middle is.
QImage meshPicture(const ColourMesh& mesh, const QRectF& area, double scale);

}  // namespace cirrovane
