#include "tests/qml/ScreenReader.h"
#include "ui/SymbolImageProvider.h"

#include <QFont>
#include <QGuiApplication>
#include <QObject>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(CirrovanePlugin)

namespace cirrovane::test {

/// Makes of each test's engine what the application makes of its own.
class Setup : public QObject {
  Q_OBJECT

 public slots:
  void applicationAvailable() {
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(14);
    QGuiApplication::setFont(font);
    qmlRegisterSingletonType<ScreenReader>("CirrovaneTest", 1, 0, "ScreenReader",
                                           [](QQmlEngine*, QJSEngine*) -> QObject* { return new ScreenReader; });
  }

  void qmlEngineAvailable(QQmlEngine* engine) {
    engine->addImportPath(QStringLiteral("qrc:/"));
    // The engine takes the provider over.
    engine->addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider);
  }
};

}  // namespace cirrovane::test

QUICK_TEST_MAIN_WITH_SETUP(cirrovane, cirrovane::test::Setup)

#include "Main.moc"
