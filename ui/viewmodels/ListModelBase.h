#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QMetaObject>
#include <QString>
#include <QVariant>
#include <QtQmlIntegration>

namespace cirrovane {

/// A list for the window. A row is a gadget, and the names of its properties are the list's roles.
class ListModelBase : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by view models")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  virtual int count() const = 0;
  /// The number of the row with this key; -1 when there is none.
  Q_INVOKABLE virtual int indexOf(const QString& key) const = 0;

  int rowCount(const QModelIndex& parent = {}) const final;
  QVariant data(const QModelIndex& index, int role) const final;
  QHash<int, QByteArray> roleNames() const final;

 signals:
  void countChanged();

 protected:
  /// The meta-object of the rows' gadget lives as long as the program.
  ListModelBase(const QMetaObject& rowType, QObject* parent);

  /// The gadget of a row below count(); valid until the next call and the next change.
  virtual const void* gadgetAt(int row) const = 0;

 private:
  const QMetaObject& rowType_;
};

}  // namespace cirrovane
