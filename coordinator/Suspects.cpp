#include "coordinator/Suspects.h"

#include <algorithm>
#include <utility>

namespace cirrovane {

void Suspects::suspect(std::vector<std::string> folders, Uptime now) {
  folders_ = std::move(folders);
  since_ = now;
  told_.clear();
}

void Suspects::told(const std::vector<FolderChange>& changes, Uptime now) {
  if (!folders_.empty()) {
    told_.add(changes, now);
  }
}

void Suspects::clear() {
  folders_.clear();
  told_.clear();
}

std::optional<Uptime> Suspects::due() const {
  return folders_.empty() ? std::nullopt : std::optional(since_ + kLateTelling);
}

std::optional<bool> Suspects::judge(Uptime now) {
  if (folders_.empty() || now < since_ + kLateTelling) {
    return std::nullopt;
  }
  const bool wasMissed =
      std::ranges::any_of(folders_, [this](const std::string& folder) { return !told_.tells(folder); });
  clear();
  return wasMissed;
}

}  // namespace cirrovane
