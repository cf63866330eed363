// A stored report: a file that this program wrote once, and anyone may have edited since.

#include "core/ISO8601.h"
#include "core/JSONReader.h"
#include "core/JSONWriter.h"
#include "core/SyncHealthReport.h"
#include "fuzz/Require.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {
namespace {

/// The time as its text holds it: in whole seconds, and within four digits of a year.
Time asWritten(Time time) {
  const std::optional<Time> read = timeFromISO8601(iso8601Text(time));
  require(read.has_value(), "every time's text is a time");
  return *read;
}

void writeTimesAsWritten(SyncHealthReport& report) {
  report.generatedAt = asWritten(report.generatedAt);
  for (SyncBlocker& blocker : report.blockers) {
    if (blocker.lastModified) {
      blocker.lastModified = asWritten(*blocker.lastModified);
    }
  }
}

void check(std::string_view bytes) {
  std::optional<SyncHealthReport> report = decodeJSON<SyncHealthReport>(bytes);
  if (!report) {
    return;
  }
  const std::string text = encodeJSON(*report);
  const std::optional<SyncHealthReport> again = decodeJSON<SyncHealthReport>(text);
  require(again.has_value(), "what was written can be read");
  writeTimesAsWritten(*report);
  require(*again == *report, "what was written reads as the same report");
  require(hashValue(*again) == hashValue(*report), "equal reports have equal hashes");
  require(encodeJSON(*again) == text, "the same report is written as the same text");
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
