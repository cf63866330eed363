#pragma once

#include "platform/qt/QtWorkspace.h"

#include <QDBusConnection>

namespace cirrovane {

/// Reveals items in the desktop's file manager, as freedesktop.org has it.
ItemRevealer makeDBusItemRevealer(const QDBusConnection& bus = QDBusConnection::sessionBus());

}  // namespace cirrovane
