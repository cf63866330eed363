#include "ui/viewmodels/IncidentListModel.h"

#include "ui/viewmodels/Severity.h"
#include "ui/viewmodels/Text.h"

#include <cstddef>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

QString occurrencesText(const IncidentRecord& record) {
  return record.occurrences == 1 ? QStringLiteral("1 occurrence")
                                 : toQString(fmt::format("{} occurrences", record.occurrences));
}

QString textOf(const IncidentRecord& record, int role, const TimeText& timeText) {
  switch (role) {
    case IncidentListModel::TitleRole:
      return toDisplay(record.title);
    case IncidentListModel::DetailRole:
      return toDisplayOutput(record.lastDetail);
    case IncidentListModel::SeveritySymbolRole:
      return severitySymbol(record.severity);
    case IncidentListModel::SeverityLevelRole:
      return severityLevel(record.severity);
    case IncidentListModel::SeverityTitleRole:
      return severityTitle(record.severity);
    case IncidentListModel::StateRole:
      return record.isResolved ? QStringLiteral("Resolved") : QStringLiteral("Active");
    case IncidentListModel::StateLevelRole:
      return record.isResolved ? QStringLiteral("ok") : QStringLiteral("warning");
    case IncidentListModel::DomainRole:
      return toQString(rawValue(record.domain));
    case IncidentListModel::OccurrencesRole:
      return occurrencesText(record);
    case IncidentListModel::FirstSeenRole:
      return toQString("First " + timeText.dayAndTime(record.firstSeen));
    case IncidentListModel::LastSeenRole:
      return toQString("Last " + timeText.dayAndTime(record.lastSeen));
    case IncidentListModel::ActionRole:
      return record.isResolved ? QStringLiteral("Reopen") : QStringLiteral("Mark Resolved");
    default:
      return {};
  }
}

}  // namespace

void IncidentListModel::setRecords(std::vector<IncidentRecord> records) {
  const int before = count();
  ListDifference(*this, items_).become(itemsOf(std::move(records)));
  tellCount(before);
}

void IncidentListModel::startOver(std::vector<IncidentRecord> records) {
  std::vector<Item> items = itemsOf(std::move(records));
  ListDifference<IncidentListModel, Item>::makeKeysUnique(items);
  const int before = count();
  beginResetModel();
  items_ = std::move(items);
  endResetModel();
  tellCount(before);
}

const IncidentRecord* IncidentListModel::recordAt(int row) const {
  return row >= 0 && row < count() ? &items_[static_cast<std::size_t>(row)].record : nullptr;
}

int IncidentListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant IncidentListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid) || timeText_ == nullptr || role < TitleRole ||
      role > ActionRole) {
    return {};
  }
  return textOf(items_[static_cast<std::size_t>(index.row())].record, role, *timeText_);
}

QHash<int, QByteArray> IncidentListModel::roleNames() const {
  return {{TitleRole, "title"},
          {DetailRole, "detail"},
          {SeveritySymbolRole, "severitySymbol"},
          {SeverityLevelRole, "severityLevel"},
          {SeverityTitleRole, "severityTitle"},
          {StateRole, "state"},
          {StateLevelRole, "stateLevel"},
          {DomainRole, "domain"},
          {OccurrencesRole, "occurrences"},
          {FirstSeenRole, "firstSeen"},
          {LastSeenRole, "lastSeen"},
          {ActionRole, "action"}};
}

void IncidentListModel::tellCount(int before) {
  if (count() != before) {
    emit countChanged();
  }
}

std::vector<IncidentListModel::Item> IncidentListModel::itemsOf(std::vector<IncidentRecord> records) {
  std::vector<Item> items;
  items.reserve(records.size());
  for (IncidentRecord& record : records) {
    items.push_back({toQString(record.id.text()), std::move(record)});
  }
  return items;
}

}  // namespace cirrovane
