#include "platform/linux/host/AutostartEntry.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::string_view kGroup = "[Desktop Entry]";

bool isControl(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 || code == 0x7F;
}

/// A value as the file holds it.
std::string escaped(std::string_view value) {
  std::string text;
  for (const char character : value) {
    text += character == '\\' ? "\\\\" : std::string(1, character);
  }
  return text;
}

/// The value that the file means. An escape that stands for no character stays as it is.
std::string unescaped(std::string_view text) {
  std::string value;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isEscape = text[at] == '\\' && at + 1 < text.size();
    if (isEscape && (text[at + 1] == '\\' || text[at + 1] == 's')) {
      value += text[++at] == 's' ? ' ' : '\\';
    } else {
      value += text[at];
    }
  }
  return value;
}

/// One argument of a command line, whatever it holds.
std::string asArgument(std::string_view argument) {
  std::string text = "\"";
  for (const char character : argument) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) {
      text += '\\';
    }
    // A per cent sign alone would stand for a file to be opened.
    text += character == '%' ? "%%" : std::string(1, character);
  }
  return text + "\"";
}

std::string_view withoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// The keys of the one group that counts.
std::map<std::string_view, std::string_view> keysOf(std::string_view entry) {
  std::map<std::string_view, std::string_view> keys;
  bool isInGroup = false;
  while (!entry.empty()) {
    const std::size_t end = std::min(entry.find('\n'), entry.size());
    const std::string_view line = withoutBlanks(entry.substr(0, end));
    entry.remove_prefix(std::min(end + 1, entry.size()));
    if (line.starts_with('[')) {
      isInGroup = line == kGroup;
    } else if (const std::size_t sign = line.find('=');
               isInGroup && sign != std::string_view::npos && !line.starts_with('#')) {
      keys[withoutBlanks(line.substr(0, sign))] = withoutBlanks(line.substr(sign + 1));
    }
  }
  return keys;
}

}  // namespace

Result<std::string> autostartEntry(const std::string& program, bool isHidden) {
  if (!program.starts_with('/') || std::ranges::any_of(program, isControl)) {
    return Failure{"This program lies where the desktop cannot start it."};
  }
  return fmt::format(
      "{}\nType=Application\nVersion=1.4\nName=Cirrovane\n"
      "Comment=See whether all your work has reached iCloud Drive before you close the Mac\n"
      "Exec={}\nTryExec={}\nIcon=com.quillmere.Cirrovane\nTerminal=false\nHidden={}\n",
      kGroup, escaped(asArgument(program)), escaped(program), isHidden);
}

bool startsAtLogin(std::string_view entry, const std::function<bool(const std::string& path)>& isExecutable) {
  const auto keys = keysOf(entry);
  const auto valueOf = [&keys](std::string_view key) {
    const auto found = keys.find(key);
    return found != keys.end() ? found->second : std::string_view();
  };
  if (valueOf("Type") != "Application" || valueOf("Exec").empty() || valueOf("Hidden") == "true" ||
      valueOf("X-GNOME-Autostart-enabled") == "false") {
    return false;
  }
  const std::string_view tried = valueOf("TryExec");
  return tried.empty() || isExecutable(unescaped(tried));
}

}  // namespace cirrovane
