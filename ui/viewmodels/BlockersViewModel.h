#pragma once

#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstddef>

namespace cirrovane {

/// The most serious blockers of the latest report. However many there are, only those that are shown are looked at.
class BlockersViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString countText READ countText NOTIFY changed)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
  Q_PROPERTY(QString emptySubtitle READ emptySubtitle NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)

 public:
  static constexpr std::size_t kShown = 5;

  using PageViewModel::PageViewModel;

  /// Of all blockers: "8 total".
  QString countText() const;
  bool isEmpty() const { return count_ == 0; }
  /// What stands in the place of no blockers: that there are none, or that nobody has looked yet.
  QString emptyTitle() const;
  QString emptySubtitle() const;
  /// The first ones, in the report's order.
  ListModel<BlockerRow>* rows() { return &rows_; }

  /// Shows a row's file in the file manager.
  Q_INVOKABLE void reveal(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  std::size_t count_ = 0;
  bool isKnown_ = false;
  ListModel<BlockerRow> rows_;
};

}  // namespace cirrovane
