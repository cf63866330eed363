#include "ui/viewmodels/TerminologyModel.h"

#include "ui/viewmodels/HelpContent.h"
#include "ui/viewmodels/Text.h"

#include <utility>
#include <vector>

namespace cirrovane {

TerminologyModel::TerminologyModel(QObject* parent) : QObject(parent) {
  std::vector<TermSectionRow> sections;
  for (const TermSection& section : termSections()) {
    std::vector<TermRow> terms;
    for (const Term& term : section.terms) {
      terms.push_back({.term = toQString(term.term), .explanation = toQString(term.explanation)});
    }
    auto* list = new ListModel<TermRow>(this);
    list->setRows(std::move(terms));
    sections.push_back({.title = toQString(section.title), .terms = list});
  }
  sections_.setRows(std::move(sections));
}

}  // namespace cirrovane
