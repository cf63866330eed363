// The file of the latest scans, also as earlier versions wrote it.

#include "fuzz/RoundTrip.h"
#include "stores/ScanSnapshot.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireRoundTrip<std::vector<cirrovane::ScanSnapshot>>({reinterpret_cast<const char*>(data), size});
  return 0;
}
