#pragma once

#include "platform/TimeText.h"

#include <memory>
#include <string>

namespace cirrovane {

/// Times by the Unicode consortium's rules for each language. Loads them at the first use.
class ICUTimeText final : public TimeText {
 public:
  /// Language and time zone by their identifiers ("sv_SE", "Europe/Stockholm"); empty for the user's.
  explicit ICUTimeText(std::string locale = {}, std::string timeZone = {});
  ~ICUTimeText() override;

  std::string shortTime(Time time) const override;
  std::string timeOfDay(Time time) const override;
  std::string dayAndTime(Time time) const override;
  std::string fileNameStamp(Time time) const override;

 private:
  struct Formats;

  const Formats& formats() const;

  std::string locale_;
  std::string timeZone_;
  mutable std::unique_ptr<Formats> formats_;
};

}  // namespace cirrovane
