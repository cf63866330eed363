#include "ui/viewmodels/FAQModel.h"

#include "ui/viewmodels/HelpContent.h"
#include "ui/viewmodels/Text.h"

#include <cstddef>

namespace cirrovane {

FAQModel::FAQModel(QObject* parent) : QObject(parent) {
  for (const Question& question : cirrovane::questions()) {
    rows_.push_back({.question = toQString(question.question), .answer = toQString(question.answer)});
  }
  list_.setRows(rows_);
}

void FAQModel::toggle(int row) {
  if (list_.find(row) != nullptr) {
    bool& expanded = rows_[static_cast<std::size_t>(row)].expanded;
    expanded = !expanded;
    list_.setRows(rows_);
  }
}

}  // namespace cirrovane
