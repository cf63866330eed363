#pragma once

#include <span>
#include <string_view>

namespace cirrovane {

/// A question of the FAQ.
struct Question {
  std::string_view question;
  std::string_view answer;
};

/// A word that the screens use, and what it means here.
struct Term {
  std::string_view term;
  std::string_view explanation;
};

struct TermSection {
  std::string_view title;
  std::span<const Term> terms;
};

/// The FAQ, in order.
std::span<const Question> questions();
/// The terminology guide, in order.
std::span<const TermSection> termSections();

}  // namespace cirrovane
