#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace cirrovane::test {

/// What a screen reader hears of a window's objects, and what it can have them do.
class ScreenReader : public QObject {
  Q_OBJECT

 public:
  explicit ScreenReader(QObject* parent = nullptr);

  /// As "Role name", for the object and all below it that is in sight, from the outermost inwards.
  Q_INVOKABLE QStringList heard(QObject* object) const;
  /// The first object of that role and name, itself or below it; null when there is none.
  Q_INVOKABLE QObject* find(QObject* object, const QString& role, const QString& name) const;

  Q_INVOKABLE QString name(QObject* object) const;
  Q_INVOKABLE QString description(QObject* object) const;
  Q_INVOKABLE bool isChecked(QObject* object) const;
  Q_INVOKABLE bool isSelected(QObject* object) const;

  /// Whether it offers to be pressed or toggled at all.
  Q_INVOKABLE bool press(QObject* object) const;
  Q_INVOKABLE bool toggle(QObject* object) const;
};

}  // namespace cirrovane::test
