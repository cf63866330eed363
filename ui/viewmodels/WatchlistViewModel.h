#pragma once

#include "base/UUID.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// The watched folders, and what the user does to them.
class WatchlistViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* rows READ rows CONSTANT)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)

 public:
  explicit WatchlistViewModel(QObject* parent = nullptr);

  bool isEmpty() const { return ids_.empty(); }
  /// Each with a "name" and a "path", in the watchlist's order.
  RowListModel* rows() { return &rows_; }
  /// Why the latest change will not outlive the application; empty when it will.
  const QString& saveFailure() const { return saveFailure_; }

  /// Lets the user pick a folder to watch.
  Q_INVOKABLE void addFolder();
  /// Stops watching a row's folder, and scans again.
  Q_INVOKABLE void remove(int row);

 protected:
  void begin() override;
  void update() override;

 private:
  /// Of the rows.
  std::vector<UUID> ids_;
  RowListModel rows_;
  QString saveFailure_;
};

}  // namespace cirrovane
