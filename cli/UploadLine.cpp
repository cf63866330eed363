#include "cli/UploadLine.h"

#include "coordinator/UploadWords.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kBarWidth = 20;

}  // namespace

UploadLine::UploadLine(std::shared_ptr<const UploadsStore> store, const FileSystem& fileSystem, const Clock& clock,
                       Output& out)
    : store_(std::move(store)), fileSystem_(fileSystem), clock_(clock), out_(out) {}

void UploadLine::show(const SyncHealthReport& report) {
  if (!out_.isErasable()) {
    return;
  }
  const std::vector<PendingFile> pending = pendingFilesOf(report);
  const Time now = clock_.now();
  record_ = !record_ ? store_->recordAfter(report)
                     : afterLook(std::move(*record_), pending, now, [this](const std::vector<std::string>& paths) {
                         return uploadStates(fileSystem_, paths);
                       });
  const PendingUploads uploads = pendingTotals(*record_, pending, now);
  share_.take(uploads);
  std::string next = uploads.pendingFiles > 0 ? text(uploads) : "";
  if (next != shown_) {
    shown_ = std::move(next);
    out_.write(kEraseLine + shown_);
  }
}

void UploadLine::erase() {
  if (!shown_.empty()) {
    shown_.clear();
    out_.write(kEraseLine);
  }
}

std::string UploadLine::text(const PendingUploads& uploads) const {
  // A full bar would say that nothing is left.
  const auto full = std::min(static_cast<std::size_t>(share_.ratio() * kBarWidth), kBarWidth - 1);
  const std::string bar = std::string(full, '#') + std::string(kBarWidth - full, '-');
  std::string line = fmt::format("[{}] {} of {} files, {} of {}", bar, share_.filesDone(), share_.allFiles(),
                                 bytesText(share_.bytesDone()), bytesText(share_.allBytes()));
  if (uploads.bytesPerSecond) {
    line += fmt::format(", {}/s", bytesText(std::llround(*uploads.bytesPerSecond)));
  }
  line += ", " + timeLeftText(uploads, record_ ? quietFor(*record_, uploads.generatedAt) : std::nullopt);
  // All of it is ASCII; a line that breaks could not be taken back.
  return line.substr(0, out_.columns() > 1 ? out_.columns() - 1 : 0);
}

}  // namespace cirrovane
