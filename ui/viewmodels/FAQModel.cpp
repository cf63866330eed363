#include "ui/viewmodels/FAQModel.h"

#include "ui/viewmodels/HelpContent.h"
#include "ui/viewmodels/Text.h"

#include <cstddef>

namespace cirrovane {

int FAQModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(questions().size());
}

QVariant FAQModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const Question& question = questions()[static_cast<std::size_t>(index.row())];
  switch (role) {
    case QuestionRole:
      return toQString(question.question);
    case AnswerRole:
      return toQString(question.answer);
    case ExpandedRole:
      return expanded_.contains(index.row());
    default:
      return {};
  }
}

QHash<int, QByteArray> FAQModel::roleNames() const {
  return {{QuestionRole, "question"}, {AnswerRole, "answer"}, {ExpandedRole, "expanded"}};
}

void FAQModel::toggle(int row) {
  if (row < 0 || row >= rowCount()) {
    return;
  }
  if (expanded_.erase(row) == 0) {
    expanded_.insert(row);
  }
  emit dataChanged(index(row), index(row), {ExpandedRole});
}

}  // namespace cirrovane
