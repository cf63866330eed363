#pragma once

#include <QMetaType>
#include <QString>

namespace cirrovane {

/// One of a few that the user chooses from.
struct ChoiceRow {
  Q_GADGET
  Q_PROPERTY(QString value MEMBER value)
  Q_PROPERTY(QString title MEMBER title)

 public:
  /// Names the choice in code and in files.
  QString value;
  QString title;

  friend bool operator==(const ChoiceRow&, const ChoiceRow&) = default;
  friend const QString& keyOf(const ChoiceRow& row) { return row.value; }
};

}  // namespace cirrovane
