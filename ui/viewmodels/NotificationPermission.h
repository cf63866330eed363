#pragma once

#include "platform/Bundle.h"
#include "platform/NotificationCenter.h"
#include "platform/Workspace.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <memory>

namespace cirrovane {

/// Whether the system shows the notifications that the user has switched on, and the way to have it do so.
class NotificationPermission : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(QString note READ note NOTIFY changed)
  Q_PROPERTY(QString action READ action NOTIFY changed)

 public:
  /// The arguments outlive this. Nothing is known before reread().
  NotificationPermission(NotificationCenter& center, const Bundle& bundle, Workspace& workspace,
                         QObject* parent = nullptr);

  /// Why none is shown; empty when the system shows them, or would ask the user.
  QString note() const;
  /// What act() does about it; empty when nothing can be done from here.
  QString action() const;

  /// Opens the system's settings.
  Q_INVOKABLE void act();
  /// Asks the system anew, which answers when it pleases.
  void reread();

 signals:
  void changed();

 private:
  NotificationCenter& center_;
  const Bundle& bundle_;
  Workspace& workspace_;
  bool isDenied_ = false;

  /// Goes with this, so that a late answer can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
