#include "ui/SymbolImageProvider.h"
#include "ui/viewmodels/AppTab.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <array>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;

// Opacities of a picture's pixels, row by row.
class Ink {
 public:
  explicit Ink(const QImage& image) : alpha_(image.convertToFormat(QImage::Format_Alpha8)) {}

  int at(int x, int y) const { return alpha_.constScanLine(y)[x]; }
  int width() const { return alpha_.width(); }
  int height() const { return alpha_.height(); }

  double coverage() const {
    double sum = 0;
    for (int y = 0; y < height(); ++y) {
      for (int x = 0; x < width(); ++x) {
        sum += at(x, y);
      }
    }
    return sum / 255 / width() / height();
  }

  bool touchesEdge() const {
    for (int i = 0; i < width(); ++i) {
      if (at(i, 0) + at(i, height() - 1) + at(0, i) + at(width() - 1, i) != 0) {
        return true;
      }
    }
    return false;
  }

  // How steep the edges are: the squared differences of neighbours.
  double sharpness() const {
    double sum = 0;
    for (int y = 1; y < height(); ++y) {
      for (int x = 1; x < width(); ++x) {
        const double across = at(x, y) - at(x - 1, y);
        const double down = at(x, y) - at(x, y - 1);
        sum += across * across + down * down;
      }
    }
    return sum;
  }

  double differenceFrom(const Ink& other) const {
    double sum = 0;
    for (int y = 0; y < height(); ++y) {
      for (int x = 0; x < width(); ++x) {
        sum += std::abs(at(x, y) - other.at(x, y));
      }
    }
    return sum / 255 / width() / height();
  }

 private:
  QImage alpha_;
};

// What Qt is told to warn of while this lives.
class Warnings {
 public:
  Warnings() : previous_(qInstallMessageHandler(&Warnings::keep)) { texts().clear(); }
  ~Warnings() { qInstallMessageHandler(previous_); }
  Warnings(const Warnings&) = delete;
  Warnings& operator=(const Warnings&) = delete;

  static std::vector<std::string>& texts() {
    static std::vector<std::string> texts;
    return texts;
  }

 private:
  static void keep(QtMsgType, const QMessageLogContext&, const QString& text) { texts().push_back(text.toStdString()); }

  QtMessageHandler previous_;
};

std::string textOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

QImage drawn(const QString& name, int side, const QColor& colour = Qt::white) {
  return symbolImage(name, colour, {side, side});
}

// The names after `name:` in a Symbol and after anything called a symbol, and every text that begins and is dotted like
// one.
QStringList namesUsedIn(const QString& source) {
  static const QRegularExpression kPlace(
      QStringLiteral(R"(\bSymbol\s*\{[^{}]*?\bname:([^\n]*)|\b\w*[sS]ymbol\w*:([^\n]*))"));
  static const QRegularExpression kText(QStringLiteral(R"re("([a-z0-9.]+)")re"));
  static const QRegularExpression kDotted(QStringLiteral(R"re("([a-z]+(?:\.[a-z0-9]+)+)")re"));
  QStringList names;
  for (auto places = kPlace.globalMatch(source); places.hasNext();) {
    const auto place = places.next();
    for (auto texts = kText.globalMatch(place.captured(1) + place.captured(2)); texts.hasNext();) {
      names.append(texts.next().captured(1));
    }
  }
  QStringList firstWords;
  for (const QString& name : symbolNames()) {
    firstWords.append(name.section(QLatin1Char('.'), 0, 0));
  }
  for (auto texts = kDotted.globalMatch(source); texts.hasNext();) {
    const QString text = texts.next().captured(1);
    if (firstWords.contains(text.section(QLatin1Char('.'), 0, 0))) {
      names.append(text);
    }
  }
  return names;
}

class SymbolsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static std::array<char, 14> program{"symbols_tests"};
    static std::array<char, 10> option{"-platform"};
    static std::array<char, 10> platform{"offscreen"};
    static std::array<char*, 4> arguments{program.data(), option.data(), platform.data(), nullptr};
    static int count = 3;
    application() = std::make_unique<QGuiApplication>(count, arguments.data());
  }
  static void TearDownTestSuite() { application().reset(); }

  static std::unique_ptr<QGuiApplication>& application() {
    static std::unique_ptr<QGuiApplication> application;
    return application;
  }
};

TEST_F(SymbolsTest, names_areThoseOfTheFolder) {
  QStringList files =
      QDir(QStringLiteral(CIRROVANE_SOURCE_DIR "/ui/symbols")).entryList({QStringLiteral("*.svg")}, QDir::Files);
  for (QString& file : files) {
    file.chop(4);
  }
  files.sort();
  EXPECT_EQ(symbolNames(), files);
  EXPECT_GE(files.size(), 33);
}

TEST_F(SymbolsTest, everyTab_hasASymbol) {
  for (const AppTab& tab : kAppTabs) {
    const QString name = QString::fromUtf8(tab.sfSymbol.data(), static_cast<qsizetype>(tab.sfSymbol.size()));
    EXPECT_TRUE(symbolNames().contains(name)) << tab.sfSymbol;
  }
}

TEST_F(SymbolsTest, namesInUse_areFound) {
  EXPECT_THAT(
      namesUsedIn(QStringLiteral("Symbol {\n  size: 3\n  name: open ? \"a\" : \"b.c\"\n}\nText { name: \"d\" }")),
      ElementsAre(QStringLiteral("a"), QStringLiteral("b.c")));
  EXPECT_THAT(namesUsedIn(QStringLiteral("symbolName: \"e\"")), ElementsAre(QStringLiteral("e")));
  EXPECT_THAT(namesUsedIn(QStringLiteral("return {\"Green\", \"checkmark.none\"}, \"www.none\"")),
              ElementsAre(QStringLiteral("checkmark.none")));
}

TEST_F(SymbolsTest, everyNameInTheWindowsSources_isASymbols) {
  QStringList used;
  QDirIterator files(QStringLiteral(CIRROVANE_SOURCE_DIR "/ui"),
                     {QStringLiteral("*.qml"), QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                     QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = files.next();
    for (const QString& name : namesUsedIn(QString::fromStdString(textOf(path)))) {
      EXPECT_TRUE(symbolNames().contains(name)) << name.toStdString() << " in " << path.toStdString();
      used.append(name);
    }
  }
  // So that the search itself is known to find something.
  EXPECT_THAT(used, IsSupersetOf({QStringLiteral("chevron.right"), QStringLiteral("checkmark.seal.fill")}));
}

TEST_F(SymbolsTest, everyDrawing_keepsToWhatQtDraws) {
  for (const QString& name : symbolNames()) {
    QFile file(QStringLiteral(":/symbols/") + name + QStringLiteral(".svg"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
      if (xml.readNext() != QXmlStreamReader::StartElement) {
        continue;
      }
      const QStringView element = xml.name();
      EXPECT_TRUE(element == QLatin1String("svg") || element == QLatin1String("path")) << name.toStdString();
      const auto attributes = xml.attributes();
      for (const QLatin1String paint : {QLatin1String("fill"), QLatin1String("stroke")}) {
        const auto value = attributes.value(paint);
        EXPECT_TRUE(value.isEmpty() || value == QLatin1String("none") || value == QLatin1String("#000"));
      }
      if (element == QLatin1String("svg")) {
        EXPECT_EQ(attributes.value(QLatin1String("viewBox")), QLatin1String("0 0 24 24")) << name.toStdString();
      }
      if (attributes.hasAttribute(QLatin1String("stroke-width"))) {
        EXPECT_EQ(attributes.value(QLatin1String("stroke-width")), QLatin1String("1.8")) << name.toStdString();
      }
    }
    EXPECT_FALSE(xml.hasError()) << name.toStdString();
  }
}

TEST_F(SymbolsTest, everySymbol_isNeitherEmptyNorABlock) {
  for (const QString& name : symbolNames()) {
    for (const int side : {16, 24, 96, 256}) {
      const QImage image = drawn(name, side);
      ASSERT_EQ(image.size(), QSize(side, side));
      const double coverage = Ink(image).coverage();
      EXPECT_GT(coverage, 0.04) << name.toStdString() << " at " << side;
      EXPECT_LT(coverage, 0.75) << name.toStdString() << " at " << side;
    }
  }
}

TEST_F(SymbolsTest, everySymbol_keepsHalfAPixelFromTheEdge) {
  for (const QString& name : symbolNames()) {
    EXPECT_FALSE(Ink(drawn(name, 48)).touchesEdge()) << name.toStdString();
  }
}

TEST_F(SymbolsTest, differentNames_showDifferentPictures) {
  const QStringList names = symbolNames();
  for (qsizetype i = 0; i < names.size(); ++i) {
    const Ink ink(drawn(names[i], 24));
    for (qsizetype j = i + 1; j < names.size(); ++j) {
      EXPECT_GT(ink.differenceFrom(Ink(drawn(names[j], 24))), 0.02)
          << names[i].toStdString() << " and " << names[j].toStdString();
    }
  }
}

TEST_F(SymbolsTest, opaquePixels_haveExactlyTheColour) {
  for (const QColor colour : {QColor(0x30, 0xd1, 0x58), QColor(0xff, 0xd6, 0x0a), QColor(0xff, 0x45, 0x3a)}) {
    for (const QString& name : symbolNames()) {
      const QImage image = drawn(name, 64, colour);
      int opaque = 0;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          const QRgb pixel = image.pixel(x, y);
          if (qAlpha(pixel) == 255) {
            ASSERT_EQ(pixel, colour.rgb()) << name.toStdString();
            ++opaque;
          }
        }
      }
      EXPECT_GT(opaque, 0) << name.toStdString();
    }
  }
}

TEST_F(SymbolsTest, translucentColour_makesThePictureTranslucent) {
  const QImage image = drawn(QStringLiteral("icloud.fill"), 32, QColor(255, 255, 255, 51));
  EXPECT_EQ(image.pixelColor(16, 16), QColor(255, 255, 255, 51));
  EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

TEST_F(SymbolsTest, twiceTheSize_hasMoreDetailThanAnEnlargedPicture) {
  for (const QString& name : symbolNames()) {
    for (const int side : {16, 22, 24, 32, 64, 128}) {
      const QImage enlarged =
          drawn(name, side).scaled(2 * side, 2 * side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
      EXPECT_GT(Ink(drawn(name, 2 * side)).sharpness(), 1.25 * Ink(enlarged).sharpness())
          << name.toStdString() << " at " << side;
    }
  }
}

TEST_F(SymbolsTest, oblong_showsTheSymbolUndistortedInTheMiddle) {
  const QImage wide = symbolImage(QStringLiteral("folder"), Qt::white, {64, 24});
  EXPECT_EQ(wide.copy(20, 0, 24, 24), drawn(QStringLiteral("folder"), 24));
  EXPECT_EQ(Ink(wide.copy(0, 0, 20, 24)).coverage(), 0);
}

TEST_F(SymbolsTest, noPixels_givesNoPicture) {
  EXPECT_TRUE(symbolImage(QStringLiteral("folder"), Qt::white, {0, 24}).isNull());
  EXPECT_TRUE(symbolImage(QStringLiteral("folder"), Qt::white, {}).isNull());
}

TEST_F(SymbolsTest, unknownName_showsAPlaceholderAndWarns) {
  for (const char* name : {"no.such.symbol", "", "../symbols/folder", "symbols/folder", "folder.svg"}) {
    const Warnings warnings;
    const QImage image = drawn(QString::fromLatin1(name), 24, Qt::red);
    EXPECT_GT(Ink(image).coverage(), 0.1) << name;
    EXPECT_EQ(image.pixelColor(12, 12), QColor(Qt::red)) << name;
    EXPECT_THAT(Warnings::texts(), ElementsAre(HasSubstr(name)));
  }
}

TEST_F(SymbolsTest, knownName_doesNotWarn) {
  const Warnings warnings;
  for (const QString& name : symbolNames()) {
    drawn(name, 16);
  }
  EXPECT_THAT(Warnings::texts(), IsEmpty());
}

TEST_F(SymbolsTest, icon_isDrawnForEachSizeOfATray) {
  const QIcon icon = symbolIcon(QStringLiteral("xmark.octagon.fill"), Qt::red);
  for (const int side : {16, 22, 24, 32, 44, 48, 64}) {
    EXPECT_TRUE(icon.availableSizes().contains(QSize(side, side))) << side;
  }
  EXPECT_EQ(icon.pixmap(QSize(24, 24), 2.0).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied), [] {
    QImage image = drawn(QStringLiteral("xmark.octagon.fill"), 48, Qt::red);
    image.setDevicePixelRatio(2);
    return image;
  }());
}

TEST_F(SymbolsTest, colour_isReadFromSixOrEightDigits) {
  EXPECT_EQ(symbolColour(QStringLiteral("30d158")), QColor(0x30, 0xd1, 0x58));
  EXPECT_EQ(symbolColour(QStringLiteral("30D15880")), QColor(0x30, 0xd1, 0x58, 0x80));
  for (const char* text : {"", "fff", "30d1580", "30d1589z", "-0d158", "#30d158", "red", "+30d15", "0x30d158"}) {
    EXPECT_EQ(symbolColour(QString::fromLatin1(text)), std::nullopt) << text;
  }
  EXPECT_EQ(symbolColour(QStringLiteral("30d15\u0131")), std::nullopt);
}

TEST_F(SymbolsTest, provider_givesTheSizeThatIsAskedFor) {
  SymbolImageProvider provider;
  const QString id = QStringLiteral("bell/ff0000ff");
  QSize size;
  EXPECT_EQ(provider.requestImage(id, &size, {40, 40}), drawn(QStringLiteral("bell"), 40, Qt::red));
  EXPECT_EQ(size, QSize(40, 40));
  EXPECT_EQ(provider.requestImage(id, nullptr, {40, 0}).size(), QSize(40, 40));
  EXPECT_EQ(provider.requestImage(id, nullptr, {-1, 32}).size(), QSize(32, 32));
  EXPECT_EQ(provider.requestImage(id, nullptr, {}).size(), QSize(24, 24));
}

TEST_F(SymbolsTest, provider_withoutAColour_warnsAndShowsTheSymbol) {
  SymbolImageProvider provider;
  for (const char* id : {"bell", "bell/", "bell/blue"}) {
    const Warnings warnings;
    EXPECT_EQ(provider.requestImage(QString::fromLatin1(id), nullptr, {24, 24}),
              drawn(QStringLiteral("bell"), 24, Qt::magenta))
        << id;
    EXPECT_THAT(Warnings::texts(), Contains(HasSubstr(id)));
  }
}

TEST_F(SymbolsTest, provider_onSeveralThreads_drawsTheSame) {
  SymbolImageProvider provider;
  const QStringList names = symbolNames();
  std::array<QList<QImage>, 4> images;
  std::vector<std::thread> threads;
  for (QList<QImage>& list : images) {
    threads.emplace_back([&provider, &names, &list] {
      for (const QString& name : names) {
        list.append(provider.requestImage(name + QStringLiteral("/ffffffff"), nullptr, {32, 32}));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (qsizetype i = 0; i < names.size(); ++i) {
    for (const QList<QImage>& list : images) {
      EXPECT_EQ(list[i], drawn(names[i], 32)) << names[i].toStdString();
    }
  }
}

/// A system that has a symbol of its own, which covers the left half, and no other.
class FakeSource final : public SymbolSource {
 public:
  std::optional<SymbolBitmap> draw(const std::string& name, int width, int height) const override {
    if (name != "the.systems.own") {
      return std::nullopt;
    }
    SymbolBitmap bitmap{width, height, {}};
    for (int pixel = 0; pixel < width * height; ++pixel) {
      bitmap.coverage.push_back(pixel % width < width / 2 ? 255 : 0);
    }
    return bitmap;
  }
};

TEST_F(SymbolsTest, systemsSymbol_isDrawnInTheColour) {
  const FakeSource source;
  // A width whose rows are not a multiple of four bytes.
  const QImage image = symbolImage("the.systems.own", QColor(10, 20, 30), {6, 3}, &source);
  ASSERT_EQ(image.size(), QSize(6, 3));
  for (int row = 0; row < 3; ++row) {
    EXPECT_EQ(image.pixelColor(2, row), QColor(10, 20, 30)) << row;
    EXPECT_EQ(image.pixelColor(3, row).alpha(), 0) << row;
  }
}

TEST_F(SymbolsTest, symbolThatTheSystemLacks_isDrawnByUs) {
  const FakeSource source;
  EXPECT_EQ(symbolImage("checkmark", Qt::white, {24, 24}, &source), drawn("checkmark", 24));
}

TEST_F(SymbolsTest, providerWithSource_servesItsSymbols) {
  const FakeSource source;
  SymbolImageProvider provider(&source);
  const QImage image = provider.requestImage(QStringLiteral("the.systems.own/0a141e"), nullptr, {8, 8});
  EXPECT_EQ(image.pixelColor(0, 0), QColor(10, 20, 30));
  EXPECT_EQ(image.pixelColor(7, 7).alpha(), 0);
}

TEST_F(SymbolsTest, window_loadsASymbolByItsAddress) {
  QQmlEngine engine;
  engine.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider);
  QQmlComponent component(&engine);
  component.setData(
      "import QtQuick\n"
      "Image { source: \"image://symbols/gauge.with.dots.needle.67percent/30d158ff\"; sourceSize: Qt.size(20, 20) }",
      {});
  const std::unique_ptr<QObject> image(component.create());
  ASSERT_NE(image, nullptr) << component.errorString().toStdString();
  EXPECT_EQ(image->property("status").toInt(), 1);
  EXPECT_EQ(image->property("implicitWidth").toInt(), 20);
}

}  // namespace
}  // namespace cirrovane
