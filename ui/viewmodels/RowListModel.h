#pragma once

#include "ui/viewmodels/ListDifference.h"

#include <QAbstractListModel>
#include <QByteArrayList>
#include <QString>
#include <QVariantList>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// A list for the screen that changes only where its content changes, so that a refresh leaves scroll positions, focus
/// and open rows alone.
class RowListModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by view models")
  Q_PROPERTY(int count READ rowCountNow NOTIFY countChanged)

 public:
  struct Row {
    /// By what the row is known again the next time.
    QString key;
    /// One for each role.
    QVariantList values;

    friend bool operator==(const Row&, const Row&) = default;
  };

  /// The names of the roles, in the order of a row's values.
  explicit RowListModel(QByteArrayList roles, QObject* parent = nullptr);

  /// Takes the list over as it is to be. Of rows with equal keys each later one counts as a row of its own.
  void setRows(std::vector<Row> rows);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void countChanged();

 private:
  friend class ListDifference<RowListModel, Row>;

  int rowCountNow() const { return static_cast<int>(rows_.size()); }

  QByteArrayList roles_;
  std::vector<Row> rows_;
};

}  // namespace cirrovane
