#pragma once

#include "base/Shared.h"
#include "core/UploadProgress.h"
#include "core/WatchFolder.h"
#include "ui/viewmodels/Background.h"
#include "ui/viewmodels/BlockerArrangement.h"
#include "ui/viewmodels/BlockerListModel.h"
#include "ui/viewmodels/EntryRow.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// All blockers of the latest report, however many, as the user has them narrowed and sorted. The work is done beside
/// the main thread; what was shown before stays until it is done.
class AllBlockersViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY changed)
  Q_PROPERTY(QString reason READ reason WRITE setReason NOTIFY changed)
  Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY changed)
  Q_PROPERTY(QString order READ order WRITE setOrder NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* reasons READ reasons CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* folders READ folders CONSTANT)
  Q_PROPERTY(cirrovane::ListModelBase* orders READ orders CONSTANT)
  Q_PROPERTY(int reasonRow READ reasonRow NOTIFY changed)
  Q_PROPERTY(int folderRow READ folderRow NOTIFY changed)
  Q_PROPERTY(int orderRow READ orderRow NOTIFY changed)
  Q_PROPERTY(QString reasonTitle READ reasonTitle NOTIFY changed)
  Q_PROPERTY(QString folderTitle READ folderTitle NOTIFY changed)
  Q_PROPERTY(QString orderTitle READ orderTitle NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* rows READ rows CONSTANT)
  Q_PROPERTY(QString countText READ countText NOTIFY changed)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
  Q_PROPERTY(bool isNarrowed READ isNarrowed NOTIFY changed)
  Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
  Q_PROPERTY(QString emptySubtitle READ emptySubtitle NOTIFY changed)
  Q_PROPERTY(QString note READ note NOTIFY changed)

 public:
  /// A report that changes the list in more places makes it start over, at the same place.
  static constexpr std::size_t kMostRuns = 64;

  explicit AllBlockersViewModel(QObject* parent = nullptr);
  explicit AllBlockersViewModel(Background background, QObject* parent = nullptr);
  ~AllBlockersViewModel() override;

  const QString& search() const { return query_.search; }
  void setSearch(const QString& search);
  /// By its raw value; empty for all.
  QString reason() const;
  void setReason(const QString& reason);
  /// The identifier of a watched folder; empty for all.
  const QString& folder() const { return folder_; }
  void setFolder(const QString& folder);
  /// "seriousness", "name", "path", "size" or "waiting".
  QString order() const;
  void setOrder(const QString& order);

  // What each can be: all, and what occurs or is chosen.
  ListModel<EntryRow>* reasons() { return &reasons_; }
  ListModel<EntryRow>* folders() { return &folders_; }
  ListModel<EntryRow>* orders() { return &orders_; }

  // Which row of these is chosen, and its title.
  int reasonRow() const { return reasons_.indexOf(reason()); }
  int folderRow() const { return folders_.indexOf(folder_); }
  int orderRow() const { return orders_.indexOf(order()); }
  QString reasonTitle() const { return titleOf(reasons_, reasonRow()); }
  QString folderTitle() const { return titleOf(folders_, folderRow()); }
  QString orderTitle() const { return titleOf(orders_, orderRow()); }

  BlockerListModel* rows() { return &rows_; }

  /// "12 of 340", "340 blockers"; empty until it is known.
  QString countText() const;
  /// Whether it is known that there is nothing to show.
  bool isEmpty() const { return shown_ && rows_.count() == 0; }
  /// Whether the user sees a part of the blockers only.
  bool isNarrowed() const { return !query_.wantsAll(); }
  /// Says that none matches, that there are none, or that no scan has ended yet.
  QString emptyTitle() const;
  QString emptySubtitle() const;
  /// What came of the latest copy; empty before the first.
  const QString& note() const { return note_; }

  /// Shows all blockers again.
  Q_INVOKABLE void clear();
  /// Shows a row's file in the file manager.
  Q_INVOKABLE void reveal(int row);
  Q_INVOKABLE void copyPath(int row);
  /// Tells anew how long files have waited.
  Q_INVOKABLE void tellWaits();

 signals:
  /// The list is about to start over in another report, in which the user wants to be where they were.
  void aboutToStartOver();
  /// It has; at its beginning unless told before.
  void startedOver(bool keepsPlace);

 protected:
  void begin() override;
  void update() override;

 private:
  struct Job;

  static QString titleOf(const ListModel<EntryRow>& list, int row);

  /// Narrows or sorts the list as the user has just asked.
  void requery();
  /// Finds out where the chosen folder lies.
  void findFolder();
  void showChoices();
  bool isUpToDate() const;
  void arrangeSoon();
  void finish();
  /// Shows what came of a job, which holds afterwards what was shown before.
  void show(Job& job, ArrangedBlockers arranged);
  /// The release of a large report takes its time, which the main thread has not.
  void release(std::shared_ptr<const void> held);

  Background background_;
  BlockerQuery query_;
  QString folder_;
  /// The chosen folder as it was last known.
  std::optional<WatchFolder> chosenFolder_;
  /// What the rows answer; absent before the first.
  std::optional<BlockerQuery> shown_;
  /// What the rows were made of.
  Shared<UploadRecord> shownUploads_;
  /// The work under way; nullptr when there is none.
  std::shared_ptr<Job> job_;
  bool isWorkDue_ = false;
  bool isKnown_ = false;
  ListModel<EntryRow> reasons_;
  ListModel<EntryRow> folders_;
  ListModel<EntryRow> orders_;
  BlockerListModel rows_;
  QString note_;

  /// Goes with the page, so that work under way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
