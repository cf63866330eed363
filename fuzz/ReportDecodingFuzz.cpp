// A stored report: a file that this program wrote once, and anyone may have edited since.

#include "core/SyncHealthReport.h"
#include "fuzz/RoundTrip.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireRoundTrip<cirrovane::SyncHealthReport>({reinterpret_cast<const char*>(data), size});
  return 0;
}
