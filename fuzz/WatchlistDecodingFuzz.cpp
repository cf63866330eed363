// The file of the watchlist, which its user may edit by hand.

#include "core/WatchFolder.h"
#include "fuzz/RoundTrip.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireRoundTrip<std::vector<cirrovane::WatchFolder>>({reinterpret_cast<const char*>(data), size});
  return 0;
}
