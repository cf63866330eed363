// The file of what the user has acknowledged, which its user may edit by hand.

#include "fuzz/RoundTrip.h"
#include "stores/Acknowledgement.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireRoundTrip<std::vector<cirrovane::Acknowledgement>>({reinterpret_cast<const char*>(data), size});
  return 0;
}
