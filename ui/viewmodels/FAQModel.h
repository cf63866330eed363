#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>
#include <set>

namespace cirrovane {

/// The questions of the FAQ page and which of them are open: none at first, any number later.
class FAQModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT

 public:
  enum Role { QuestionRole = Qt::UserRole + 1, AnswerRole, ExpandedRole };

  using QAbstractListModel::QAbstractListModel;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

  /// Opens a question, or closes it.
  Q_INVOKABLE void toggle(int row);

 private:
  std::set<int> expanded_;
};

}  // namespace cirrovane
