#include "evidence/Pseudonyms.h"

#include "base/Path.h"
#include "base/UTF8.h"
#include "core/FolderNaming.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace cirrovane {
namespace {

constexpr std::size_t kLongestExtension = 8;

bool isSmall(char byte) {
  return byte >= 'a' && byte <= 'z';
}
bool isCapital(char byte) {
  return byte >= 'A' && byte <= 'Z';
}
bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

void appendNumber(std::size_t number, std::string& out) {
  std::array<char, 20> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  out.append(digits.data(), end);
}

/// The text as a packet's file holds it.
std::string asWritten(std::string_view text) {
  std::string out;
  for (std::size_t position = 0; position < text.size();) {
    const DecodedCharacter character = decodeCharacter(text, position);
    out += character.isValid ? text.substr(position, character.length) : "\xEF\xBF\xBD";
    position += character.length;
  }
  return out;
}

/// Whether the path begins with what a redacted one has in place of a home folder.
bool isHomeSign(std::string_view component) {
  return component.starts_with('~') && std::ranges::all_of(component.substr(1), isDigit);
}

/// The first `count` components of an absolute path; empty where there are fewer.
std::string_view firstComponents(std::string_view path, int count) {
  std::size_t end = 0;
  for (; count > 0 && end < path.size(); --count) {
    const std::size_t start = end + 1;
    end = std::min(path.find('/', start), path.size());
    if (end == start) {
      return {};
    }
  }
  return count == 0 ? path.substr(0, end) : std::string_view();
}

}  // namespace

std::string_view extensionOf(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || name.size() - dot - 1 > kLongestExtension) {
    return {};
  }
  const std::string_view letters = name.substr(dot + 1);
  const bool isOfOneCase = std::ranges::all_of(letters, [](char byte) { return isSmall(byte) || isDigit(byte); }) ||
                           std::ranges::all_of(letters, [](char byte) { return isCapital(byte) || isDigit(byte); });
  return isOfOneCase && !std::ranges::all_of(letters, isDigit) ? name.substr(dot) : std::string_view();
}

Pseudonyms::Pseudonyms(bool keepsExtensions, std::string home)
    : keepsExtensions_(keepsExtensions), home_(withoutTrailingSlash(home)) {
  if (!home_.starts_with('/') || home_ == "/") {
    home_.clear();
  }
}

std::size_t Pseudonyms::numberOf(std::string_view text, Numbers& numbers) {
  if (!isValidUTF8(text)) {
    return numberOf(asWritten(text), numbers);
  }
  const auto found = numbers.find(text);
  return found != numbers.end() ? found->second : numbers.emplace(text, numbers.size() + 1).first->second;
}

void Pseudonyms::appendName(std::string_view name, std::string& out) {
  out += "name-";
  appendNumber(numberOf(name, names_), out);
  if (keepsExtensions_) {
    out += extensionOf(name);
  }
}

void Pseudonyms::appendPath(std::string_view path, std::string& out) {
  const std::string_view home = homeOf(path);
  if (!home.empty()) {
    appendHome(home, out);
    if (home_.empty() && home.starts_with('/')) {
      // Known from now on, wherever it lies.
      home_ = home;
    }
    path.remove_prefix(home.size());
    if (isAtOrBelow(path, kICloudDriveSubpath)) {
      out += kICloudDriveSubpath;
      path.remove_prefix(kICloudDriveSubpath.size());
    }
  }
  appendComponents(path, out);
}

std::string_view Pseudonyms::homeOf(std::string_view path) const {
  if (path.starts_with('~')) {
    const std::string_view sign = path.substr(0, path.find('/'));
    return isHomeSign(sign) ? sign : std::string_view();
  }
  if (!path.starts_with('/')) {
    return {};
  }
  if (!home_.empty() && isAtOrBelow(path, home_)) {
    return path.substr(0, home_.size());
  }
  if (path.starts_with("/Users/") || path.starts_with("/home/")) {
    return firstComponents(path, 2);
  }
  const std::size_t drive = path.find(kICloudDriveSubpath);
  const bool isWhole = drive != std::string_view::npos && isAtOrBelow(path.substr(drive), kICloudDriveSubpath);
  return isWhole ? path.substr(0, drive) : std::string_view();
}

void Pseudonyms::appendHome(std::string_view home, std::string& out) {
  const std::size_t number = numberOf(home, homes_);
  out += '~';
  if (number > 1) {
    appendNumber(number, out);
  }
}

void Pseudonyms::appendComponents(std::string_view components, std::string& out) {
  while (!components.empty()) {
    const std::size_t end = std::min(components.find('/'), components.size());
    if (end > 0) {
      appendName(components.substr(0, end), out);
    }
    if (end < components.size()) {
      out += '/';
    }
    components.remove_prefix(std::min(end + 1, components.size()));
  }
}

}  // namespace cirrovane
