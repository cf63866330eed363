#pragma once

#include <QMetaType>
#include <QString>

namespace cirrovane {

/// A tab for the window.
struct TabRow {
  Q_GADGET
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString symbol MEMBER symbol)

 public:
  /// The tab's id. QML keeps the name `id` for itself.
  QString name;
  QString title;
  QString symbol;

  friend bool operator==(const TabRow&, const TabRow&) = default;
  friend const QString& keyOf(const TabRow& row) { return row.name; }
};

}  // namespace cirrovane
