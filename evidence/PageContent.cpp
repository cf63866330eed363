#include "evidence/PageContent.h"

namespace cirrovane {

void PageContent::element(const SyncBlocker& blocker) {
  ++counts_.at(static_cast<std::size_t>(blocker.reason));
  blockers_.add(blocker);
}

void PageContent::value(std::string_view key, const Time& time) {
  (key == "exportedAt" ? exportedAt_ : report_.generatedAt) = time;
}

void PageContent::value(std::string_view key, std::int64_t number) {
  (key == "score" ? report_.score : report_.localAvailabilityScore) = number;
}

void PageContent::value(std::string_view /*key*/, bool truth) {
  report_.safeToClose = truth;
}

void PageContent::value(std::string_view /*key*/, HealthState state) {
  report_.status = state;
}

void PageContent::value(std::string_view /*key*/, const std::string& text) {
  report_.summary = text;
}

}  // namespace cirrovane
