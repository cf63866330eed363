#pragma once

#include "ui/viewmodels/ListModel.h"

#include <QMetaProperty>
#include <ostream>
#include <vector>

namespace cirrovane {

/// Prints a row by the names of its fields when a test fails.
template <class Row, class = typename Row::QtGadgetHelper>
std::ostream& operator<<(std::ostream& out, const Row& row) {
  const QMetaObject& type = Row::staticMetaObject;
  for (int index = 0; index < type.propertyCount(); ++index) {
    const QMetaProperty field = type.property(index);
    out << (index > 0 ? ", " : "{") << field.name() << ": " << field.readOnGadget(&row).toString().toStdString();
  }
  return out << '}';
}

}  // namespace cirrovane

namespace cirrovane::test {

/// All rows of a list, in order.
template <class Row, class Source>
std::vector<Row> rowsOf(const ListModel<Row, Source>& list) {
  std::vector<Row> rows;
  for (int row = 0; row < list.count(); ++row) {
    rows.push_back(list.row(row));
  }
  return rows;
}

/// One field of all rows, in order.
template <class Row, class Source, class Field>
std::vector<Field> fieldsOf(const ListModel<Row, Source>& list, Field Row::*field) {
  std::vector<Field> fields;
  for (const Row& row : rowsOf(list)) {
    fields.push_back(row.*field);
  }
  return fields;
}

}  // namespace cirrovane::test
