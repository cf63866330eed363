#include "ui/items/ColourMesh.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>

namespace cirrovane {
namespace {

/// Premultiplied, each 0 to 255.
using Channels = std::array<double, 4>;

Channels channelsOf(const QColor& colour) {
  const double alpha = colour.alphaF();
  return {colour.redF() * alpha * 255, colour.greenF() * alpha * 255, colour.blueF() * alpha * 255, alpha * 255};
}

/// Twice the area of a triangle, negative where its corners run the other way round.
double doubledArea(const QPointF& first, const QPointF& second, const QPointF& third) {
  const QPointF one = second - first;
  const QPointF other = third - first;
  return one.x() * other.y() - one.y() * other.x();
}

/// Where a row's middle enters and leaves a triangle; the first beyond the second where it passes by.
std::pair<double, double> crossing(const std::array<QPointF, 3>& corners, double y) {
  std::pair<double, double> span(std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest());
  for (std::size_t index = 0; index < corners.size(); ++index) {
    const QPointF& from = corners.at(index);
    const QPointF& to = corners.at((index + 1) % corners.size());
    if (from.y() == to.y() || y < std::min(from.y(), to.y()) || y > std::max(from.y(), to.y())) {
      continue;
    }
    const double x = std::lerp(from.x(), to.x(), (y - from.y()) / (to.y() - from.y()));
    span = {std::min(span.first, x), std::max(span.second, x)};
  }
  return span;
}

/// Two triangles that share an edge have the same colour there, so a pixel may belong to both.
void paintTriangle(QImage& image, std::span<const MeshVertex, 3> triangle, const QPointF& origin, double scale) {
  std::array<QPointF, 3> corners;
  std::array<Channels, 3> colours{};
  for (std::size_t index = 0; index < corners.size(); ++index) {
    corners.at(index) = (triangle[index].place - origin) * scale;
    colours.at(index) = channelsOf(triangle[index].colour);
  }
  const double area = doubledArea(corners[0], corners[1], corners[2]);
  if (area == 0) {
    return;
  }
  const auto [top, bottom] = std::minmax({corners[0].y(), corners[1].y(), corners[2].y()});
  const int firstRow = std::max(static_cast<int>(std::ceil(top - 0.5)), 0);
  const int lastRow = std::min(static_cast<int>(std::floor(bottom - 0.5)), image.height() - 1);
  for (int row = firstRow; row <= lastRow; ++row) {
    const auto [left, right] = crossing(corners, row + 0.5);
    const int first = static_cast<int>(std::clamp(std::ceil(left - 0.5), 0.0, static_cast<double>(image.width())));
    const int last = static_cast<int>(std::clamp(std::floor(right - 0.5), -1.0, image.width() - 1.0));
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
    for (int column = first; column <= last; ++column) {
      const QPointF place(column + 0.5, row + 0.5);
      const std::array<double, 3> weights = {doubledArea(corners[1], corners[2], place) / area,
                                             doubledArea(corners[2], corners[0], place) / area,
                                             doubledArea(corners[0], corners[1], place) / area};
      std::array<int, 4> pixel{};
      for (std::size_t index = 0; index < pixel.size(); ++index) {
        const double value =
            weights[0] * colours[0].at(index) + weights[1] * colours[1].at(index) + weights[2] * colours[2].at(index);
        pixel.at(index) = static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
      }
      line[column] = qRgba(pixel[0], pixel[1], pixel[2], pixel[3]);
    }
  }
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

QImage meshPicture(const ColourMesh& mesh, const QRectF& area, double scale) {
  const QSize pixels(static_cast<int>(std::ceil(area.width() * scale)),
                     static_cast<int>(std::ceil(area.height() * scale)));
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const std::span<const MeshVertex> corners = mesh;
  for (std::size_t index = 0; index + 3 <= corners.size(); index += 3) {
    paintTriangle(image, corners.subspan(index).first<3>(), area.topLeft(), scale);
  }
  return image;
}

}  // namespace cirrovane
