#include "platform/linux/host/ICUCollation.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>

namespace cirrovane {
namespace {

icu::Locale collationLocale(const std::string& identifier) {
  const icu::Locale locale =
      identifier.empty() ? icu::Locale::getDefault() : icu::Locale::createCanonical(identifier.c_str());
  // A machine without a language sorts by code points, all upper case first: no order for a person's folders.
  return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

icu::StringPiece pieceOf(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

}  // namespace

struct ICUCollation::Rules {
  /// Absent when the machine lacks the rules' data.
  std::unique_ptr<icu::Collator> collator;

  explicit Rules(const std::string& locale) {
    UErrorCode error = U_ZERO_ERROR;
    collator.reset(icu::Collator::createInstance(collationLocale(locale), error));
    if (U_FAILURE(error) != 0) {
      collator.reset();
      return;
    }
    // Letters and accents count, case does not.
    collator->setStrength(icu::Collator::SECONDARY);
  }
};

ICUCollation::ICUCollation(std::string locale) : locale_(std::move(locale)) {}

ICUCollation::~ICUCollation() = default;

std::weak_ordering ICUCollation::compare(std::string_view lhs, std::string_view rhs) const {
  if (!rules_) {
    rules_ = std::make_unique<Rules>(locale_);
  }
  UErrorCode error = U_ZERO_ERROR;
  if (rules_->collator) {
    const UCollationResult result = rules_->collator->compareUTF8(pieceOf(lhs), pieceOf(rhs), error);
    if (U_SUCCESS(error) != 0) {
      return static_cast<int>(result) <=> 0;
    }
  }
  return lhs <=> rhs;
}

}  // namespace cirrovane
