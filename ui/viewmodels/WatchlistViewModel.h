#pragma once

#include "base/UUID.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Text.h"

#include <QString>
#include <QtQmlIntegration>

namespace cirrovane {

/// A watched folder in words.
struct FolderRow {
  Q_GADGET
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString path MEMBER path)

 public:
  QString name;
  QString path;
  UUID id = {};

  friend bool operator==(const FolderRow&, const FolderRow&) = default;
  friend QString keyOf(const FolderRow& row) { return toQString(row.id.text()); }
};

/// The watched folders, and what the user does to them.
class WatchlistViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  bool isEmpty() const { return rows_.count() == 0; }
  /// In the watchlist's order.
  ListModel<FolderRow>* rows() { return &rows_; }
  /// Why the latest change is not on the disk; empty when it is.
  const QString& saveFailure() const { return saveFailure_; }

  /// Lets the user pick a folder to watch.
  Q_INVOKABLE void addFolder();
  /// Stops watching a row's folder, and scans again.
  Q_INVOKABLE void remove(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  ListModel<FolderRow> rows_;
  QString saveFailure_;
};

}  // namespace cirrovane
