#include "demo/CloudState.h"

#include "base/UTF8.h"
#include "demo/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace cirrovane::demo {
namespace {

constexpr std::array<std::string_view, 2> kYesOrNo = {"true", "false"};
constexpr std::array<std::string_view, 3> kDownloadingStatuses = {"current", "downloaded", "notDownloaded"};

constexpr std::array<CloudKey, 10> kCloudKeys = {{
    {"isUbiquitous", kYesOrNo, "is an iCloud item at all"},
    {"isUploaded", kYesOrNo, "has reached iCloud"},
    {"isUploading", kYesOrNo, "is on its way (stalled when last modified over 20 minutes ago)"},
    {"hasUnresolvedConflicts", kYesOrNo, "was changed in two places"},
    {"downloadingStatus", kDownloadingStatuses, "current is local, notDownloaded cloud-only"},
    {"uploadingError", {}, "why its upload failed"},
    {"downloadingError", {}, "why its download failed"},
    {"isExcludedFromSync", kYesOrNo, "is left out of iCloud on purpose"},
    {"isSyncPaused", kYesOrNo, "is in iCloud, which is paused for it"},
    {"isListable", kYesOrNo, "of a folder: false keeps everybody from its list of names"},
}};

const CloudKey* findKey(std::string_view name) {
  const auto* found = std::ranges::find(kCloudKeys, name, &CloudKey::name);
  return found == kCloudKeys.end() ? nullptr : found;
}

bool accepts(const CloudKey& key, std::string_view value) {
  return key.values.empty() || std::ranges::find(key.values, value) != key.values.end();
}

std::string listed(std::span<const std::string_view> words) {
  std::string text;
  for (std::size_t index = 0; index < words.size(); ++index) {
    text += index == 0 ? "" : index + 1 == words.size() ? " or " : ", ";
    text += words[index];
  }
  return text;
}

bool isBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

bool isFor(std::string_view line, std::string_view key) {
  return line.starts_with(key) && line.substr(key.size()).starts_with('=');
}

/// Whether a reader would give up on the whole state because of this line.
bool isBroken(std::string_view line) {
  if (isBlank(line)) {
    return false;
  }
  const std::size_t separator = line.find('=');
  if (separator == std::string_view::npos) {
    return true;
  }
  const CloudKey* key = findKey(line.substr(0, separator));
  return key != nullptr && !accepts(*key, line.substr(separator + 1));
}

}  // namespace

std::span<const CloudKey> cloudKeys() {
  return kCloudKeys;
}

std::optional<std::string> complaintAbout(std::string_view name, std::string_view value) {
  const CloudKey* key = findKey(name);
  if (key == nullptr) {
    std::vector<std::string_view> names;
    std::ranges::transform(kCloudKeys, std::back_inserter(names), &CloudKey::name);
    return "\"" + printable(name) + "\" is no key of a file's iCloud state; use " + listed(names) + ".";
  }
  if (value.empty()) {
    return std::nullopt;
  }
  if (!accepts(*key, value)) {
    return std::string(name) + " cannot be \"" + printable(value) + "\"; use " + listed(key->values) +
           ", or nothing to remove the key.";
  }
  if (value.find('\n') != std::string_view::npos || !isValidUTF8(value)) {
    return std::string(name) + " takes one line of UTF-8 text.";
  }
  return std::nullopt;
}

CloudState::CloudState(std::string_view text) {
  while (!text.empty()) {
    const std::size_t lineEnd = text.find('\n');
    lines_.emplace_back(text.substr(0, lineEnd));
    text.remove_prefix(lineEnd == std::string_view::npos ? text.size() : lineEnd + 1);
  }
}

void CloudState::set(std::string_view key, std::string_view value) {
  const auto isForKey = [&](const std::string& line) { return isFor(line, key); };
  auto place = std::ranges::find_if(lines_, isForKey);
  if (!value.empty()) {
    std::string line = std::string(key) + "=" + std::string(value);
    if (place == lines_.end()) {
      lines_.push_back(std::move(line));
      return;
    }
    *place = std::move(line);
    ++place;
  }
  lines_.erase(std::remove_if(place, lines_.end(), isForKey), lines_.end());
}

void CloudState::settle() {
  if (!isValidUTF8(text())) {
    lines_.clear();
  }
  std::erase_if(lines_, isBroken);
  set("isUploaded", "true");
  set("isUploading", "false");
  set("hasUnresolvedConflicts", "false");
  set("downloadingStatus", "current");
  set("uploadingError", "");
  set("downloadingError", "");
  set("isExcludedFromSync", "");
  set("isSyncPaused", "");
  set("isListable", "");
}

void CloudState::setUploaded() {
  set("isUploaded", "true");
  set("isUploading", "");
  set("uploadingError", "");
}

bool CloudState::isPending() const {
  return !isEmpty() && value("isUbiquitous") != "false" &&
         (value("isUploaded") == "false" || !value("uploadingError").empty());
}

std::string_view CloudState::value(std::string_view key) const {
  const auto line =
      std::find_if(lines_.rbegin(), lines_.rend(), [&](const std::string& text) { return isFor(text, key); });
  return line == lines_.rend() ? std::string_view() : std::string_view(*line).substr(key.size() + 1);
}

bool CloudState::isEmpty() const {
  return std::ranges::all_of(lines_, isBlank);
}

std::string CloudState::text() const {
  std::string text;
  for (const std::string& line : lines_) {
    text += line;
    text += '\n';
  }
  return text;
}

}  // namespace cirrovane::demo
