#include "platform/qt/DBusFileManager.h"

#include "platform/qt/DBusCall.h"

#include <QCoreApplication>
#include <QStringList>
#include <utility>

namespace cirrovane {

ItemRevealer makeDBusItemRevealer(const QDBusConnection& bus) {
  return [bus](const std::string& path, std::function<void()> orElse) {
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                                       "org.freedesktop.FileManager1", "ShowItems");
    const QString noStartupId("");
    call << QStringList{QString::fromStdString(fileURI(path))} << noStartupId;
    callDBus(bus, call, QCoreApplication::instance(), [orElse = std::move(orElse)](const QDBusMessage& reply) {
      if (reply.type() == QDBusMessage::ErrorMessage) {
        orElse();
      }
    });
  };
}

}  // namespace cirrovane
