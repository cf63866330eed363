#pragma once

#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// The next steps of the latest report, the least risky first.
class ActionsViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::RowListModel* rows READ rows CONSTANT)
  Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)

 public:
  explicit ActionsViewModel(QObject* parent = nullptr);

  /// Each with a "rank" ("1."), a "title" and a "detail".
  RowListModel* rows() { return &rows_; }
  /// What stands in the place of the steps before a scan has found any; empty when there are some.
  const QString& emptyText() const { return emptyText_; }

 protected:
  void begin() override;
  void update() override;

 private:
  RowListModel rows_;
  QString emptyText_;
};

}  // namespace cirrovane
