#pragma once

#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A next step in words.
struct ActionRow {
  Q_GADGET
  Q_PROPERTY(QString rank MEMBER rank)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)

 public:
  /// "1."
  QString rank;
  QString title;
  QString detail;

  friend bool operator==(const ActionRow&, const ActionRow&) = default;
  friend const QString& keyOf(const ActionRow& row) { return row.title; }
};

/// The next steps of the latest report, the least risky first.
class ActionsViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)

 public:
  using PageViewModel::PageViewModel;

  ListModel<ActionRow>* rows() { return &rows_; }

 protected:
  void begin() override;
  void update() override;

 private:
  ListModel<ActionRow> rows_;
};

}  // namespace cirrovane
