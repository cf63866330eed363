#include "ui/viewmodels/NotificationPermission.h"

namespace cirrovane {

NotificationPermission::NotificationPermission(NotificationCenter& center, const Bundle& bundle, Workspace& workspace,
                                               QObject* parent)
    : QObject(parent), center_(center), bundle_(bundle), workspace_(workspace) {}

QString NotificationPermission::note() const {
  if (!isApplicationBundle(bundle_)) {
    return QStringLiteral("No notifications are shown: only an installed application can show notifications.");
  }
  if (!isDenied_) {
    return {};
  }
  return center_.settingsAddress()
             ? QStringLiteral("No notifications are shown: allow Cirrovane in System Settings > Notifications.")
             : QStringLiteral(
                   "No notifications are shown: allow Cirrovane in your desktop's settings, under Notifications.");
}

QString NotificationPermission::action() const {
  const bool leadsThere = isApplicationBundle(bundle_) && isDenied_ && center_.settingsAddress();
  return leadsThere ? QStringLiteral("Open System Settings") : QString();
}

void NotificationPermission::act() {
  if (const auto address = center_.settingsAddress()) {
    workspace_.openURL(*address);
  }
}

void NotificationPermission::reread() {
  if (!isApplicationBundle(bundle_)) {
    emit changed();
    return;
  }
  center_.readAuthorization([this, alive = std::weak_ptr(alive_)](NotificationAuthorization authorization) {
    if (!alive.expired()) {
      isDenied_ = authorization == NotificationAuthorization::denied;
      emit changed();
    }
  });
}

}  // namespace cirrovane
