#pragma once

#include <QMetaType>
#include <QString>

namespace cirrovane {

/// An entry of a list from which the user picks one: a tab, or what a list is narrowed to.
struct EntryRow {
  Q_GADGET
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString symbol MEMBER symbol)

 public:
  /// Names it in code. QML keeps the name `id` for itself.
  QString name;
  QString title;
  QString symbol;

  friend bool operator==(const EntryRow&, const EntryRow&) = default;
  friend const QString& keyOf(const EntryRow& row) { return row.name; }
};

}  // namespace cirrovane
