#include "platform/qt/DBusCall.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <memory>
#include <utility>

namespace cirrovane {

void callDBus(const QDBusConnection& bus, const QDBusMessage& call, QObject* context,
              std::function<void(const QDBusMessage&)> then) {
  // Nobody would tell of the end of a call on a bus that never was.
  const QDBusPendingCall pending =
      bus.isConnected() ? bus.asyncCall(call)
                        : QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, "There is no bus."));
  auto* watcher = std::make_unique<QDBusPendingCallWatcher>(pending, context).release();
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then = std::move(then)] {
    watcher->deleteLater();
    then(watcher->reply());
  });
}

}  // namespace cirrovane
