#include "ui/viewmodels/CoverageText.h"

#include "coordinator/CoverageWords.h"
#include "ui/viewmodels/Text.h"

#include <string>

namespace cirrovane {

QString coverageSummary(const std::optional<Shared<CoverageReport>>& report) {
  if (!report) {
    return QStringLiteral("Nobody has looked yet.");
  }
  const CoverageReport& found = **report;
  const std::string known = acknowledgedText(found.acknowledged);
  const QString end = known.empty() ? QString() : QStringLiteral(" %1.").arg(toQString(known));
  if (found.complete) {
    return QStringLiteral("The verdict vouches for everything in your watched folders.") + end;
  }
  QString sentence = toQString(unvouchedSentence(found));
  sentence.chop(1);
  return QStringLiteral("%1: %2.").arg(sentence, toQString(gapSummary(found))) + end;
}

QString unvouchedText(const std::optional<Shared<CoverageReport>>& report) {
  return report ? toQString(unvouchedSentence(**report)) : QString();
}

QString yesNote(const ShownVerdict& verdict, const std::optional<Shared<CoverageReport>>& report) {
  return verdict.isKnown() && verdict.safeToClose ? unvouchedText(report) : QString();
}

}  // namespace cirrovane
