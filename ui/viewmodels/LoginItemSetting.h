#pragma once

#include "platform/LoginItem.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// "Open at login" as the settings show it. The system has the last word, so each choice is read back.
class LoginItemSetting : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY changed)
  Q_PROPERTY(bool isOn READ isOn WRITE setOn NOTIFY changed)
  Q_PROPERTY(QString note READ note NOTIFY changed)
  Q_PROPERTY(QString action READ action NOTIFY changed)

 public:
  /// The login item outlives this. Nothing is known before reread().
  explicit LoginItemSetting(LoginItem& loginItem, QObject* parent = nullptr) : QObject(parent), loginItem_(loginItem) {}

  /// Whether there is anything to choose.
  bool isAvailable() const { return isAvailable_; }
  /// Also while the user's approval is missing.
  bool isOn() const { return isAvailable_ && state_ != LoginItemState::off; }
  /// What keeps the choice from being what it says; empty when nothing does.
  QString note() const;
  /// What act() does about it; empty when nothing can be done from here.
  QString action() const;

  void setOn(bool isOn);
  /// Opens the system's settings.
  Q_INVOKABLE void act();
  /// Takes over what the user may have changed elsewhere.
  void reread();

 signals:
  void changed();

 private:
  /// Without a word to anybody.
  void readState();

  LoginItem& loginItem_;
  bool isAvailable_ = false;
  LoginItemState state_ = LoginItemState::off;
  /// Why there is nothing to choose, or why the latest choice came to nothing; empty otherwise.
  QString failure_;
};

}  // namespace cirrovane
