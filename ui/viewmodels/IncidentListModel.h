#pragma once

#include "platform/TimeText.h"
#include "stores/IncidentRecord.h"
#include "ui/viewmodels/ListDifference.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// Incidents in words, each made only when a view asks for it: there may be thousands, of which a few are in sight.
class IncidentListModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by view models")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  enum Role {
    TitleRole = Qt::UserRole + 1,
    DetailRole,
    SeveritySymbolRole,
    SeverityLevelRole,
    SeverityTitleRole,
    StateRole,
    StateLevelRole,
    DomainRole,
    OccurrencesRole,
    FirstSeenRole,
    LastSeenRole,
    ActionRole,
  };

  using QAbstractListModel::QAbstractListModel;

  /// The text for times; outlives the model. Without it there are no rows to ask for.
  void setTimeText(const TimeText& timeText) { timeText_ = &timeText; }

  /// Takes over what became of the list; rows that stay are left alone.
  void setRecords(std::vector<IncidentRecord> records);
  /// Takes another list over, to be shown from its start.
  void startOver(std::vector<IncidentRecord> records);

  /// nullptr when there is no such row.
  const IncidentRecord* recordAt(int row) const;

  int count() const { return static_cast<int>(items_.size()); }
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void countChanged();

 private:
  struct Item {
    QString key;
    IncidentRecord record;

    friend bool operator==(const Item&, const Item&) = default;
  };
  friend class ListDifference<IncidentListModel, Item>;

  void tellCount(int before);
  static std::vector<Item> itemsOf(std::vector<IncidentRecord> records);

  const TimeText* timeText_ = nullptr;
  std::vector<Item> items_;
};

}  // namespace cirrovane
