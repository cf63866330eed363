// The file of how many files folders held, which its user may edit by hand.

#include "fuzz/RoundTrip.h"
#include "stores/FileCountStore.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireRoundTrip<std::vector<cirrovane::FileCountHistory>>({reinterpret_cast<const char*>(data), size});
  return 0;
}
