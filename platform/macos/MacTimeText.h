#pragma once

#include "platform/TimeText.h"

#include <memory>
#include <string>

namespace cirrovane {

/// Times by Foundation's rules for the user's locale and time zone, followed when the user changes them. Makes its
/// formatters at the first use.
class MacTimeText final : public TimeText {
 public:
  MacTimeText();
  ~MacTimeText() override;

  std::string shortTime(Time time) const override;
  std::string timeOfDay(Time time) const override;
  std::string dayAndTime(Time time) const override;
  std::string fileNameStamp(Time time) const override;

 private:
  struct Formats;

  const Formats& formats() const;

  mutable std::unique_ptr<Formats> formats_;
};

}  // namespace cirrovane
