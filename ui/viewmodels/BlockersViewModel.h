#pragma once

#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstddef>
#include <string>
#include <vector>

namespace cirrovane {

/// The most serious blockers of the latest report. However many there are, only those that are shown are looked at.
class BlockersViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString countText READ countText NOTIFY changed)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
  Q_PROPERTY(QString emptySubtitle READ emptySubtitle NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* rows READ rows CONSTANT)

 public:
  static constexpr std::size_t kShown = 5;

  explicit BlockersViewModel(QObject* parent = nullptr);

  /// Of all blockers: "8 total".
  QString countText() const;
  bool isEmpty() const { return count_ == 0; }
  /// What stands in the place of no blockers: that there are none, or that nobody has looked yet.
  QString emptyTitle() const;
  QString emptySubtitle() const;
  /// The first ones, in the report's order, with the roles of blockerRoles().
  RowListModel* rows() { return &rows_; }

  /// Shows a row's file in the file manager.
  Q_INVOKABLE void reveal(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  std::size_t count_ = 0;
  bool isKnown_ = false;
  /// Of the rows, as they are on the disk.
  std::vector<std::string> paths_;
  RowListModel rows_;
};

}  // namespace cirrovane
