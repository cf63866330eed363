#pragma once

#include "platform/Collation.h"

#include <memory>
#include <string>

namespace cirrovane {

/// The order of names that a language has, by its Unicode collation rules. Loads them at the first comparison, since
/// most runs of the program never sort a name.
class ICUCollation final : public Collation {
 public:
  /// The language by its identifier ("sv_SE"); empty for the user's.
  explicit ICUCollation(std::string locale = {});
  ~ICUCollation() override;

  std::weak_ordering compare(std::string_view lhs, std::string_view rhs) const override;

 private:
  struct Rules;

  std::string locale_;
  mutable std::unique_ptr<Rules> rules_;
};

}  // namespace cirrovane
