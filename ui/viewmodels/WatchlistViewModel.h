#pragma once

#include "base/UUID.h"
#include "core/SyncHealthReport.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Text.h"
#include "ui/viewmodels/Tone.h"

#include <QList>
#include <QString>
#include <QUrl>
#include <QtQmlIntegration>

namespace cirrovane {

/// A watched folder in words.
struct FolderRow {
  Q_GADGET
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString path MEMBER path)
  Q_PROPERTY(QString symbol MEMBER symbol)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)
  Q_PROPERTY(QString health MEMBER health)
  Q_PROPERTY(QString folderId READ folderId)

 public:
  QString folderId() const { return toQString(id.text()); }

  QString name;
  QString path;
  /// Of the folder's own state. A plain folder before its first scan.
  QString symbol;
  Tone tone = Tone::Neutral;
  /// "Unsafe · Score 40 · 12 files · 1 blocker"; "Not scanned yet" before its first scan.
  QString health;
  UUID id = {};

  friend bool operator==(const FolderRow&, const FolderRow&) = default;
  friend QString keyOf(const FolderRow& row) { return row.folderId(); }
};

/// The watched folders, and what the user does to them.
class WatchlistViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)
  Q_PROPERTY(QString removalNote READ removalNote NOTIFY changed)
  Q_PROPERTY(QString saveFailure READ saveFailure NOTIFY changed)

 public:
  using PageViewModel::PageViewModel;

  bool isEmpty() const { return rows_.count() == 0; }
  /// In the watchlist's order.
  ListModel<FolderRow>* rows() { return &rows_; }
  /// Why the latest change is not on the disk; empty when it is.
  const QString& saveFailure() const { return saveFailure_; }

  /// What was just removed and can be brought back; empty when nothing can.
  const QString& removalNote() const { return removalNote_; }

  /// Watches what was dropped here, and answers whether a folder was among it.
  Q_INVOKABLE bool addDropped(const QList<QUrl>& items);
  /// Lets the user pick a folder to watch.
  Q_INVOKABLE void addFolder();
  /// Stops watching a row's folder, and scans again.
  Q_INVOKABLE void remove(int row);
  /// Brings back what the note is about.
  Q_INVOKABLE void undoRemoval();

 protected:
  void begin() override;
  void update() override;

 private:
  ListModel<FolderRow> rows_;
  QString removalNote_;
  QString saveFailure_;
};

}  // namespace cirrovane
