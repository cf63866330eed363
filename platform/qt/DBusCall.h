#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <functional>

namespace cirrovane {

/// Sends a method call and returns. `then` gets the reply, or the error in its place, on this thread's event loop and
/// never before this function has returned; nobody is called when `context` is gone by then.
void callDBus(const QDBusConnection& bus, const QDBusMessage& call, QObject* context,
              std::function<void(const QDBusMessage&)> then);

}  // namespace cirrovane
