#include "core/BlockerReason.h"
#include "ui/viewmodels/HelpContent.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

TEST(HelpContent, guide_hasFourSectionsOfEighteenTerms) {
  std::vector<std::string> titles;
  std::size_t count = 0;
  for (const TermSection& section : termSections()) {
    titles.emplace_back(section.title);
    count += section.terms.size();
  }
  EXPECT_THAT(titles, ElementsAre("Core Signals", "Status Colors", "Blocker Reasons", "Audit and Proof"));
  EXPECT_EQ(count, 18U);
}

TEST(HelpContent, blockerReasons_areExplainedByTheNamesThatScreensUse) {
  std::set<std::string> explained;
  for (const Term& term : termSections()[2].terms) {
    explained.emplace(term.term);
  }
  std::set<std::string> shown;
  for (const BlockerReason reason : kAllBlockerReasons) {
    shown.emplace(displayTitle(reason));
  }
  EXPECT_EQ(explained, shown);
}

TEST(HelpContent, texts_areWholeSentences) {
  for (const Question& question : questions()) {
    EXPECT_TRUE(question.question.ends_with('?')) << question.question;
    EXPECT_TRUE(question.answer.ends_with('.')) << question.answer;
  }
  for (const TermSection& section : termSections()) {
    for (const Term& term : section.terms) {
      EXPECT_TRUE(term.explanation.ends_with('.')) << term.term;
    }
  }
}

}  // namespace
}  // namespace cirrovane::test
