// Paints each of the window's own items, on dark and on light, into pictures; and compares two folders of them.
//   item_pictures paint FOLDER       by whatever the environment has the toolkit draw with
//   item_pictures compare ONE OTHER  a line each: name, greatest difference of a channel, share of the pixels that
//   differ
//                                    by more than a rounding, share of the pixels that the item covers in either

#include "ui/SymbolImageProvider.h"
#include "ui/items/ScoreTimeline.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

Q_IMPORT_QML_PLUGIN(CirrovanePlugin)

namespace cirrovane::test {
namespace {

constexpr QSize kSize(480, 320);
/// A channel of a colour that was rounded on its way may be off by so much.
constexpr int kRounding = 3;

struct Scene {
  const char* name;
  const char* body;
};

constexpr std::array kScenes = {
    Scene{"backdrop-liquid",
          "AppBackdropView { anchors.fill: parent; isClassic: false; motionEnabled: false; orbOnePhase: 0.3; "
          "orbTwoPhase: 0.8 }"},
    Scene{"backdrop-classic", "AppBackdropView { anchors.fill: parent; isClassic: true; motionEnabled: false }"},
    Scene{"card-liquid",
          "CardOutline { anchors.fill: parent; anchors.margins: 20; radius: 20; fill: Qt.rgba(0.1, 0.15, 0.21, 0.5); "
          "outlineStart: Qt.rgba(1, 1, 1, 0.35); outlineEnd: Qt.rgba(1, 1, 1, 0.1) }"},
    Scene{"card-classic",
          "CardOutline { anchors.fill: parent; anchors.margins: 20; radius: 18; fill: Qt.rgba(1, 0.5, 0, 0.12); "
          "outlineStart: Qt.rgba(0, 0.5, 1, 0.2); outlineEnd: Qt.rgba(1, 0, 0, 0.2) }"},
    Scene{"card-between-pixels",
          "CardOutline { x: 20; y: 20; width: 400.4; height: 250.6; radius: 20; fill: Qt.rgba(0.5, 0.5, 0.5, 0.5); "
          "outlineStart: Qt.rgba(0, 0, 1, 0.9); outlineEnd: Qt.rgba(1, 0, 0, 0.9) }"},
    Scene{"card-small",
          "CardOutline { x: 20; y: 20; width: 30; height: 26; radius: 20; fill: Qt.rgba(0.1, 0.15, 0.21, 0.5); "
          "outlineStart: Qt.rgba(0, 0, 1, 0.9); outlineEnd: Qt.rgba(1, 0, 0, 0.9) }"},
    Scene{"ring-danger",
          "ScoreRing { x: 20; y: 20; width: 240; height: 240; progress: 30; tone: Tone.Critical; strokeWidth: 14; "
          "shadowRadius: 12; track: Qt.rgba(0.5, 0.5, 0.5, 0.3); green: Theme.green; yellow: Theme.yellow; orange: "
          "Theme.orange; red: Theme.red }"},
    Scene{"ring-safe",
          "ScoreRing { x: 20; y: 20; width: 240; height: 240; progress: 100; tone: Tone.Good; strokeWidth: 14; "
          "shadowRadius: 12; track: Qt.rgba(0.5, 0.5, 0.5, 0.3); green: Theme.green; yellow: Theme.yellow; orange: "
          "Theme.orange; red: Theme.red }"},
    Scene{"chart",
          "ScoreTimeline { objectName: \"chart\"; anchors.fill: parent; anchors.margins: 20; gridColor: Qt.rgba(0.5, "
          "0.5, 0.5, 0.5); lineColor: Theme.teal; pointColor: Qt.rgba(0.5, 0.5, 0.5, 1) }"},
    Scene{"symbol", "Symbol { x: 20; y: 20; name: \"icloud.fill\"; size: 64; color: Theme.blue }"},
    Scene{"gauge",
          "Item { anchors.fill: parent; Rectangle { x: 20; y: 20; width: 400; height: 40; radius: 20; color: "
          "Theme.teal } Divider { x: 20; y: 100; width: 400; color: Theme.orange } Rectangle { x: 20; y: 140; width: "
          "400; height: 60; radius: 8; color: Theme.pillFill; border.width: 2; border.color: Theme.focusRing } }"}};

ScoreHistory someScores() {
  std::vector<ScanSnapshot> snapshots;
  for (const int score : {20, 90, 85, 10, 60, 100, 0, 45}) {
    ScanSnapshot snapshot;
    snapshot.timestamp = Time(std::chrono::minutes(29'000'000 + 7 * static_cast<int>(snapshots.size())));
    snapshot.score = score;
    snapshots.push_back(snapshot);
  }
  return ScoreHistory(snapshots);
}

bool paintScene(QQmlEngine& engine, const Scene& scene, const char* ground, const QDir& folder) {
  QQuickWindow window;
  window.resize(kSize);
  window.setColor(QColor(QLatin1String(ground)));
  QQmlComponent component(&engine);
  component.setData(QByteArray("import QtQuick\nimport Cirrovane\nItem { ") + scene.body + " }", {});
  const std::unique_ptr<QObject> made(component.create());
  auto* item = qobject_cast<QQuickItem*>(made.get());
  if (item == nullptr) {
    std::fprintf(stderr, "%s: %s\n", scene.name, qPrintable(component.errorString()));
    return false;
  }
  if (auto* chart = item->findChild<ScoreTimeline*>(QStringLiteral("chart"))) {
    chart->setSnapshots(someScores());
  }
  item->setParentItem(window.contentItem());
  item->setSize(kSize);
  window.show();
  const QString name = QStringLiteral("%1-on-%2.png").arg(QLatin1String(scene.name), QLatin1String(ground));
  return window.grabWindow().save(folder.filePath(name));
}

int paint(const QString& folder) {
  QQmlEngine engine;
  engine.addImportPath(QStringLiteral("qrc:/"));
  engine.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider(nullptr));
  bool isDone = QDir().mkpath(folder);
  for (const Scene& scene : kScenes) {
    for (const char* ground : {"black", "white"}) {
      isDone = paintScene(engine, scene, ground, QDir(folder)) && isDone;
    }
  }
  return isDone ? 0 : 1;
}

int difference(QRgb one, QRgb other) {
  return std::max(
      {std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)), std::abs(qBlue(one) - qBlue(other))});
}

/// The share of the pixels for which that holds.
template <typename Condition>
double shareOf(const QImage& image, const Condition& condition) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      count += condition(x, y) ? 1 : 0;
    }
  }
  return static_cast<double>(count) / (image.width() * image.height());
}

int compare(const QDir& first, const QDir& second) {
  const QStringList names = first.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
  for (const QString& name : names) {
    const QImage one = QImage(first.filePath(name)).convertToFormat(QImage::Format_RGB32);
    const QImage other = QImage(second.filePath(name)).convertToFormat(QImage::Format_RGB32);
    if (one.isNull() || one.size() != other.size()) {
      std::fprintf(stderr, "%s: no two pictures of one size\n", qPrintable(name));
      return 1;
    }
    int greatest = 0;
    const double unlike = shareOf(one, [&](int x, int y) {
      const int here = difference(one.pixel(x, y), other.pixel(x, y));
      greatest = std::max(greatest, here);
      return here > kRounding;
    });
    const QRgb ground = name.contains(QLatin1String("white")) ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
    const auto covered = [&](const QImage& image) {
      return shareOf(image, [&](int x, int y) { return difference(image.pixel(x, y), ground) > kRounding; });
    };
    std::printf("%s %d %.5f %.5f %.5f\n", qPrintable(name), greatest, unlike, covered(one), covered(other));
  }
  return names.isEmpty() ? 1 : 0;
}

}  // namespace
}  // namespace cirrovane::test

int main(int argumentCount, char** arguments) {
  const QGuiApplication application(argumentCount, arguments);
  const QStringList given = QCoreApplication::arguments();
  if (given.size() == 3 && given[1] == QLatin1String("paint")) {
    return cirrovane::test::paint(given[2]);
  }
  if (given.size() == 4 && given[1] == QLatin1String("compare")) {
    return cirrovane::test::compare(QDir(given[2]), QDir(given[3]));
  }
  return 2;
}
