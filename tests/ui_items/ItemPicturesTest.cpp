#include "tests/ui_items/Application.h"
#include "ui/items/ColourMesh.h"
#include "ui/items/DiagonalGradient.h"
#include "ui/items/SoftOrb.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class DiagonalGradientTest : public ApplicationTest {
 protected:
  DiagonalGradientTest() {
    gradient_.setSize({800, 600});
    gradient_.setProperty("start", QColor(200, 100, 0));
    gradient_.setProperty("end", QColor(0, 100, 200));
  }

  /// The picture's colour at a point of the item.
  QColor colourAt(double x, double y) const {
    const QImage picture = gradient_.picture();
    return picture.pixelColor(static_cast<int>(x / gradient_.width() * picture.width()),
                              static_cast<int>(y / gradient_.height() * picture.height()));
  }

  DiagonalGradient gradient_;
};

TEST_F(DiagonalGradientTest, picture_isSmallAndOpaque) {
  const QImage picture = gradient_.picture();
  EXPECT_LE(picture.sizeInBytes(), 100 * 75 * 4);
  EXPECT_FALSE(picture.hasAlphaChannel());
  gradient_.setSize({0, 0});
  EXPECT_EQ(gradient_.picture().size(), QSize(1, 1));
}

TEST_F(DiagonalGradientTest, colours_runFromCornerToCorner) {
  EXPECT_NEAR(colourAt(0, 0).red(), 200, 2);
  EXPECT_NEAR(colourAt(0, 0).blue(), 0, 2);
  EXPECT_NEAR(colourAt(799, 599).red(), 0, 2);
  EXPECT_NEAR(colourAt(799, 599).blue(), 200, 2);
  EXPECT_NEAR(colourAt(400, 300).red(), 100, 2);
  EXPECT_EQ(colourAt(400, 300).green(), 100);
}

TEST_F(DiagonalGradientTest, orb_lightsWhatIsAroundIt) {
  const int before = colourAt(400, 300).green();
  SoftOrb orb;
  orb.setProperty("color", QColor(0, 255, 0, 128));
  orb.setProperty("diameter", 200);
  orb.setProperty("blurRadius", 20);
  orb.setPosition({400, 300});
  orb.setParentItem(&gradient_);
  // In the middle of so large a disc the blur takes nothing away.
  EXPECT_NEAR(colourAt(400, 300).green(), before + (255 - before) * 128 / 255, 2);
  EXPECT_NEAR(colourAt(400, 200).green(), before + (255 - before) * 128 / 255 / 2, 8);
  EXPECT_EQ(colourAt(10, 10).green(), before);
  orb.setVisible(false);
  EXPECT_EQ(colourAt(400, 300).green(), before);
}

TEST_F(DiagonalGradientTest, orb_withoutShape_isNothing) {
  SoftOrb orb;
  EXPECT_EQ(orb.opacityAt(0), 0);
  orb.setParentItem(&gradient_);
  EXPECT_EQ(colourAt(400, 300).green(), 100);
}

TEST_F(DiagonalGradientTest, orb_opacity_isTheBlurredDiscs) {
  SoftOrb orb;
  orb.setProperty("diameter", 420);
  orb.setProperty("blurRadius", 80);
  for (double distance = 0; distance < 440; distance += 13) {
    EXPECT_NEAR(orb.opacityAt(distance), blurredDiscOpacity(210, 80, distance), 0.002) << distance;
  }
  EXPECT_EQ(orb.opacityAt(1000), 0);
}

/// A band of two colours from the left to the right of an area.
ColourMesh bandOver(const QRectF& area, const QColor& left, const QColor& right) {
  ColourMesh mesh;
  addBand(mesh, {{area.topLeft(), left}, {area.topRight(), right}},
          {{area.bottomLeft(), left}, {area.bottomRight(), right}});
  return mesh;
}

TEST(MeshPicture, band_blendsBetweenItsCorners) {
  const QImage picture = meshPicture(bandOver({0, 0, 100, 10}, Qt::black, Qt::white), {0, 0, 100, 10}, 1);
  ASSERT_EQ(picture.size(), QSize(100, 10));
  for (int x = 0; x < 100; ++x) {
    for (int y = 0; y < 10; ++y) {
      EXPECT_NEAR(picture.pixelColor(x, y).red(), (x + 0.5) / 100 * 255, 1) << x << ' ' << y;
      EXPECT_EQ(picture.pixelColor(x, y).alpha(), 255);
    }
  }
}

TEST(MeshPicture, area_isCutOut) {
  const ColourMesh mesh = bandOver({0, 0, 100, 10}, Qt::black, Qt::white);
  const QImage picture = meshPicture(mesh, {50, 5, 100, 10}, 1);
  EXPECT_NEAR(picture.pixelColor(0, 0).red(), 50.5 / 100 * 255, 1);
  EXPECT_EQ(picture.pixelColor(49, 4).alpha(), 255);
  EXPECT_EQ(picture.pixelColor(50, 4).alpha(), 0);
  EXPECT_EQ(picture.pixelColor(49, 5).alpha(), 0);
}

TEST(MeshPicture, scale_isPixelsAPoint) {
  const QImage picture = meshPicture(bandOver({0, 0, 10, 10}, Qt::red, Qt::red), {0, 0, 10, 10}, 1.5);
  EXPECT_EQ(picture.size(), QSize(15, 15));
  EXPECT_EQ(picture.pixelColor(14, 14), QColor(Qt::red));
}

TEST(MeshPicture, triangles_coverEachOfTheirPixelsAsAPainterDoes) {
  const QColor half(0, 0, 255, 128);
  const ColourMesh mesh = {{{2, 3}, half}, {{60, 20}, half}, {{30, 55}, half}};
  const QImage picture = meshPicture(mesh, {0, 0, 64, 64}, 1);
  QImage painted(64, 64, QImage::Format_ARGB32_Premultiplied);
  painted.fill(Qt::transparent);
  QPainter painter(&painted);
  painter.setPen(Qt::NoPen);
  painter.setBrush(half);
  painter.drawPolygon(QPolygonF({QPointF(2, 3), QPointF(60, 20), QPointF(30, 55)}));
  painter.end();
  int unlike = 0;
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 64; ++x) {
      unlike += std::abs(qAlpha(picture.pixel(x, y)) - qAlpha(painted.pixel(x, y))) > 1 ? 1 : 0;
    }
  }
  // On the very edge either may decide.
  EXPECT_LE(unlike, 4);
}

}  // namespace
}  // namespace cirrovane::test
