#include "platform/qt/DBusCall.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QMetaObject>
#include <utility>

namespace cirrovane {

void callDBus(const QDBusConnection& bus, const QDBusMessage& call, QObject* context,
              std::function<void(const QDBusMessage&)> then) {
  if (!bus.isConnected()) {
    // A watcher would not tell of a call that never was.
    const QDBusMessage error = call.createErrorReply(QDBusError::Disconnected, "There is no bus.");
    QMetaObject::invokeMethod(
        context, [error, then = std::move(then)] { then(error); }, Qt::QueuedConnection);
    return;
  }
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), context);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then = std::move(then)] {
    watcher->deleteLater();
    then(watcher->reply());
  });
}

}  // namespace cirrovane
