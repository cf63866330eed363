#include "tests/ui/Rows.h"
#include "ui/viewmodels/HelpContent.h"
#include "ui/viewmodels/TerminologyModel.h"
#include "ui/viewmodels/Text.h"

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(TerminologyModel, guide_isHandedOutWhole) {
  TerminologyModel guide;
  ASSERT_EQ(guide.sections()->count(), static_cast<int>(termSections().size()));
  int number = 0;
  for (const TermSection& section : termSections()) {
    const TermSectionRow shown = guide.sections()->row(number++);
    EXPECT_EQ(shown.title, toQString(section.title));
    const auto* terms = dynamic_cast<const ListModel<TermRow>*>(shown.terms);
    ASSERT_NE(terms, nullptr);
    ASSERT_EQ(terms->count(), static_cast<int>(section.terms.size()));
    EXPECT_EQ(terms->row(0).term, toQString(section.terms.front().term));
    EXPECT_EQ(terms->row(0).explanation, toQString(section.terms.front().explanation));
  }
}

}  // namespace
}  // namespace cirrovane::test
