#include "ui/viewmodels/TerminologyModel.h"

#include "ui/viewmodels/HelpContent.h"
#include "ui/viewmodels/Text.h"

#include <QVariantMap>

namespace cirrovane {

QVariantList TerminologyModel::sections() const {
  QVariantList sections;
  for (const TermSection& section : termSections()) {
    QVariantList terms;
    for (const Term& term : section.terms) {
      terms.append(QVariantMap{{QStringLiteral("term"), toQString(term.term)},
                               {QStringLiteral("explanation"), toQString(term.explanation)}});
    }
    sections.append(QVariantMap{{QStringLiteral("title"), toQString(section.title)}, {QStringLiteral("terms"), terms}});
  }
  return sections;
}

}  // namespace cirrovane
