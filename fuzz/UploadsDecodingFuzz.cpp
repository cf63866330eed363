// The file of how uploads go, which its user may edit by hand: what is read is written as it was, and whatever numbers
// and times it holds, a look that goes on from it comes to something.

#include "core/UploadProgress.h"
#include "fuzz/RoundTrip.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

const Time kNow = Time(std::chrono::sys_days(std::chrono::year(2026) / 11 / 15));

void requireLook(UploadRecord record) {
  const std::vector<PendingFile> pending = {{"/x/a", "x", 7}, {"/x/b", "x", 1'000'000}};
  const UploadRecord after = afterLook(std::move(record), pending, kNow, [](const std::vector<std::string>& paths) {
    return std::vector<UploadState>(paths.size(), UploadState::uploaded);
  });
  require(after.files.size() <= UploadRecord::kMostFiles, "no more is kept than there is room for");
  const PendingUploads uploads = pendingUploads(after, pending, kNow);
  require(uploads.pendingFiles == 2 && uploads.pendingBytes == 1'000'007,
          "what is pending does not hang on the record");
  require(uploads.stuckFiles >= 0 && uploads.stuckFiles <= 2, "no more is stuck than is pending");
  require(!uploads.bytesPerSecond || *uploads.bytesPerSecond >= 0, "nothing comes back");
  require(!uploads.estimate ||
              (uploads.estimate->earliest >= kNow && uploads.estimate->earliest <= uploads.estimate->latest),
          "an estimate lies ahead");
  const auto quiet = quietFor(after, kNow);
  require(!quiet || quiet->count() >= 0, "nobody is quiet for less than no time");
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  cirrovane::requireRoundTrip<cirrovane::UploadRecord>(bytes);
  if (const auto record = cirrovane::decodeJSON<cirrovane::UploadRecord>(bytes)) {
    cirrovane::requireLook(*record);
  }
  return 0;
}
