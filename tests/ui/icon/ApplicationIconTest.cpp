#include "ui/icon/ApplicationIcon.h"

#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QXmlStreamReader>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using testing::IsEmpty;

class ApplicationIconTest : public testing::TestWithParam<int> {
 protected:
  /// The colour at a place of the drawing, whose sides are 512.
  static QColor colourAt(const QImage& image, int x, int y) {
    return image.pixelColor(x * image.width() / 512, y * image.height() / 512);
  }
};

TEST_P(ApplicationIconTest, drawing_hasItsPartsInEverySize) {
  const QImage image = applicationImage(GetParam());
  ASSERT_EQ(image.size(), QSize(GetParam(), GetParam()));
  for (const auto& corner : {QPoint(0, 0), QPoint(511, 0), QPoint(0, 511), QPoint(511, 511)}) {
    EXPECT_EQ(colourAt(image, corner.x(), corner.y()).alpha(), 0);
  }
  const QColor backdrop = colourAt(image, 90, 420);
  EXPECT_EQ(backdrop.alpha(), 255);
  EXPECT_LT(backdrop.lightnessF(), 0.3);
  const QColor cloud = colourAt(image, 200, 220);
  EXPECT_GT(cloud.lightnessF(), 0.85);
  const QColor seal = colourAt(image, 352, 410);
  EXPECT_GT(seal.green(), 2 * seal.red());
  EXPECT_GT(seal.green(), seal.blue());
}

INSTANTIATE_TEST_SUITE_P(Sizes, ApplicationIconTest, testing::Values(16, 22, 24, 32, 48, 64, 128, 256, 512, 1024));

TEST(ApplicationIcon, margin_isLeftFreeOnEachSide) {
  const QImage whole = applicationImage(200);
  const QImage framed = applicationImage(200, 0.25);
  ASSERT_EQ(framed.size(), whole.size());
  EXPECT_GT(whole.pixelColor(100, 20).alpha(), 0);
  for (const auto& place : {QPoint(100, 49), QPoint(100, 150), QPoint(49, 100), QPoint(150, 100)}) {
    EXPECT_EQ(framed.pixelColor(place).alpha(), 0);
  }
  EXPECT_GT(framed.pixelColor(100, 60).alpha(), 0);
}

TEST(ApplicationIcon, noPixels_areNoImage) {
  EXPECT_TRUE(applicationImage(0).isNull());
  EXPECT_TRUE(applicationImage(-1).isNull());
}

TEST(ApplicationIcon, icon_hasEverySizeThatDesktopsAskFor) {
  std::string name = "icon_tests";
  std::vector<char*> arguments{name.data(), nullptr};
  int count = 1;
  const QGuiApplication application(count, arguments.data());
  const QIcon icon = applicationIcon();
  for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
    EXPECT_TRUE(icon.availableSizes().contains(QSize(side, side))) << side;
  }
}

TEST(ApplicationIcon, drawing_keepsToWhatEveryDesktopDraws) {
  QFile file(QStringLiteral(":/icon/com.quillmere.Cirrovane.svg"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QXmlStreamReader reader(&file);
  std::vector<std::string> beyondTiny;
  while (!reader.atEnd()) {
    reader.readNext();
    for (const char* element : {"filter", "mask", "clipPath", "style", "text", "image", "script"}) {
      if (reader.isStartElement() && reader.name() == QLatin1String(element)) {
        beyondTiny.emplace_back(element);
      }
    }
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  EXPECT_THAT(beyondTiny, IsEmpty());
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argumentCount, arguments);
  return RUN_ALL_TESTS();
}
