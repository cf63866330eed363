#pragma once

#include "ui/viewmodels/BlockerText.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstddef>

namespace cirrovane {

/// The most serious blockers of the latest report. It reads the first ones only, since there may be very many.
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

  /// Counts all blockers: "8 total".
  QString countText() const;
  bool isEmpty() const { return count_ == 0; }
  /// Says that there are no blockers, or that no scan has ended yet.
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
