// The file of the incidents: their texts come from whatever the diagnostics found on the machine.

#include "fuzz/RoundTrip.h"
#include "stores/IncidentRecord.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::requireRoundTrip<std::vector<cirrovane::IncidentRecord>>({reinterpret_cast<const char*>(data), size});
  return 0;
}
