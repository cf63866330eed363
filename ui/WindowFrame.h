#pragma once

#include "platform/UserDefaults.h"

#include <QList>
#include <QRect>
#include <optional>

class QWindow;

namespace cirrovane {

/// Place and size of the main window as the user left it; absent when that was never stored, or is none.
std::optional<QRect> storedWindowFrame(const UserDefaults& userDefaults);
void storeWindowFrame(UserDefaults& userDefaults, const QRect& frame);

/// The frame moved and made smaller as far as it must be to lie on one of the screens, which may be others than when it
/// was stored.
QRect fittedToScreens(const QRect& frame, const QList<QRect>& screens);

}  // namespace cirrovane
