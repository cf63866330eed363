// The least that a window of this toolkit can be: what a window costs before anything is made of it.

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QUrl>

int main(int argumentCount, char** arguments) {
  const QGuiApplication application(argumentCount, arguments);
  QQmlApplicationEngine engine;
  engine.load(QUrl(QStringLiteral("qrc:/BareWindow/BareWindow.qml")));
  return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
