#include "platform/linux/walk/ICloudAttribute.h"

#include "base/UTF8.h"

namespace cirrovane {
namespace {

constexpr std::string_view kIsListableKey = "isListable";

/// Takes one line off the front, without its end.
std::string_view takeLine(std::string_view& bytes) {
  const std::size_t lineEnd = bytes.find('\n');
  const std::string_view line = bytes.substr(0, lineEnd);
  bytes.remove_prefix(lineEnd == std::string_view::npos ? bytes.size() : lineEnd + 1);
  return line;
}

bool readFlag(std::string_view text, std::optional<bool>& target) {
  if (text == "true" || text == "false") {
    target = text == "true";
    return true;
  }
  return false;
}

bool readStatus(std::string_view text, std::optional<DownloadingStatus>& target) {
  if (text == "current") {
    target = DownloadingStatus::current;
  } else if (text == "downloaded") {
    target = DownloadingStatus::downloaded;
  } else if (text == "notDownloaded") {
    target = DownloadingStatus::notDownloaded;
  } else {
    return false;
  }
  return true;
}

/// Takes one key's value in; false when the value is none that the key can have. Keys that say nothing of the item's
/// own values are no concern of ours.
bool readEntry(std::string_view key, std::string_view value, WalkScope scope, std::optional<bool>& isUbiquitous,
               ResourceValues& values) {
  if (key == "isUbiquitous") {
    return readFlag(value, isUbiquitous);
  }
  if (key == "isUploaded") {
    return readFlag(value, values.isUploaded);
  }
  if (key == "isUploading") {
    return readFlag(value, values.isUploading);
  }
  if (key == "hasUnresolvedConflicts") {
    return readFlag(value, values.hasUnresolvedConflicts);
  }
  if (key == "downloadingStatus") {
    return readStatus(value, values.downloadingStatus);
  }
  if (key == kIsListableKey) {
    std::optional<bool> isListable;
    return readFlag(value, isListable);
  }
  if (scope == WalkScope::everything && key == "isExcludedFromSync") {
    return readFlag(value, values.isExcludedFromSync);
  }
  if (scope == WalkScope::everything && key == "isSyncPaused") {
    return readFlag(value, values.isSyncPaused);
  }
  if (key == "uploadingError") {
    values.uploadingError = value;
  } else if (key == "downloadingError") {
    values.downloadingError = value;
  }
  return true;
}

}  // namespace

std::optional<ResourceValues> parseICloudAttribute(std::string_view bytes, WalkScope scope) {
  if (!isValidUTF8(bytes)) {
    return std::nullopt;
  }
  ResourceValues values;
  std::optional<bool> isUbiquitous;
  while (!bytes.empty()) {
    const std::string_view line = takeLine(bytes);
    if (line.find_first_not_of(" \t\r") == std::string_view::npos) {
      continue;
    }
    const std::size_t separator = line.find('=');
    if (separator == std::string_view::npos ||
        !readEntry(line.substr(0, separator), line.substr(separator + 1), scope, isUbiquitous, values)) {
      return std::nullopt;
    }
  }
  values.isUbiquitousItem = isUbiquitous.value_or(true);
  return values;
}

bool allowsListing(std::string_view bytes) {
  bool allows = true;
  while (!bytes.empty()) {
    const std::string_view line = takeLine(bytes);
    const std::size_t separator = line.find('=');
    if (separator != std::string_view::npos && line.substr(0, separator) == kIsListableKey) {
      allows = line.substr(separator + 1) != "false";
    }
  }
  return allows;
}

}  // namespace cirrovane
