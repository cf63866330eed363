#include "ui/viewmodels/ListModelBase.h"

#include <QMetaProperty>

namespace cirrovane {
namespace {

constexpr int kFirstRole = Qt::UserRole + 1;

}  // namespace

ListModelBase::ListModelBase(const QMetaObject& rowType, QObject* parent)
    : QAbstractListModel(parent), rowType_(rowType) {}

int ListModelBase::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant ListModelBase::data(const QModelIndex& index, int role) const {
  const int property = role - kFirstRole;
  if (!checkIndex(index, CheckIndexOption::IndexIsValid) || property < 0 || property >= rowType_.propertyCount()) {
    return {};
  }
  return rowType_.property(property).readOnGadget(gadgetAt(index.row()));
}

QHash<int, QByteArray> ListModelBase::roleNames() const {
  QHash<int, QByteArray> names;
  for (int property = 0; property < rowType_.propertyCount(); ++property) {
    names.insert(kFirstRole + property, rowType_.property(property).name());
  }
  return names;
}

}  // namespace cirrovane
