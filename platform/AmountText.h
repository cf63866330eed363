#pragma once

#include <cstdint>
#include <string>

namespace cirrovane {

/// Sizes and lengths of time as the system writes them for people. Main thread only.
class AmountText {
 public:
  virtual ~AmountText() = default;
  /// Megabytes or gigabytes, in powers of 1000, as for a file: "512.3 MB", "17.18 GB", and "Zero KB" for nothing.
  virtual std::string byteCount(std::int64_t bytes) const = 0;
  /// Days, hours and minutes, the two largest that are not zero: "3d 4h", and "0m" for what is less or no number.
  virtual std::string duration(double seconds) const = 0;
};

}  // namespace cirrovane
