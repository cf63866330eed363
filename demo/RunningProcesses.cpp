#include "demo/RunningProcesses.h"

#include "demo/AtomicFile.h"
#include "demo/Failure.h"
#include "demo/Text.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane::demo {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr int kFirstNewNumber = 1500;
constexpr const char* kSampleProcesses =
    "# The processes of this Mac, as pgrep finds them: number and name.\n"
    "412 Finder\n"
    "437 cloudd\n"
    "441 bird\n"
    "463 fileproviderd\n";

struct Process {
  std::string_view number;
  std::string_view name;
};

std::string_view withoutBlanksAround(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// Absent for a line that is none to pgrep either.
std::optional<Process> processIn(std::string_view line) {
  line = withoutBlanksAround(line);
  const std::size_t end = std::min(line.find_first_of(kBlanks), line.size());
  const std::string_view number = line.substr(0, end);
  if (number.empty() || number.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  return Process{number, withoutBlanksAround(line.substr(end))};
}

bool isNamed(std::string_view line, std::string_view name) {
  const std::optional<Process> process = processIn(line);
  return process && process->name == name;
}

bool hasNumber(const std::vector<std::string>& lines, const std::string& number) {
  return std::ranges::any_of(lines, [&](const std::string& line) {
    const std::optional<Process> process = processIn(line);
    return process && process->number == number;
  });
}

std::filesystem::path listPath(const std::filesystem::path& root) {
  return root / "processes.txt";
}

/// Without a list nothing runs.
std::vector<std::string> readLines(const std::filesystem::path& root) {
  const std::filesystem::path path = listPath(root);
  std::vector<std::string> lines;
  if (!std::filesystem::exists(path)) {
    return lines;
  }
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    lines.push_back(std::move(line));
  }
  if (!file.eof()) {
    throw CouldNot(printable(path.native()) + " cannot be read.");
  }
  return lines;
}

void writeLines(const std::filesystem::path& root, const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  writeAtomically(listPath(root), text, kPublicFile);
}

}  // namespace

void writeSampleProcesses(const std::filesystem::path& root) {
  writeAtomically(listPath(root), kSampleProcesses, kPublicFile);
}

bool startProcess(const std::filesystem::path& root, const std::string& name) {
  std::vector<std::string> lines = readLines(root);
  if (std::ranges::any_of(lines, [&](const std::string& line) { return isNamed(line, name); })) {
    return false;
  }
  int number = kFirstNewNumber;
  while (hasNumber(lines, std::to_string(number))) {
    ++number;
  }
  lines.push_back(std::to_string(number) + " " + name);
  writeLines(root, lines);
  return true;
}

bool stopProcess(const std::filesystem::path& root, const std::string& name) {
  std::vector<std::string> lines = readLines(root);
  if (std::erase_if(lines, [&](const std::string& line) { return isNamed(line, name); }) == 0) {
    return false;
  }
  writeLines(root, lines);
  return true;
}

}  // namespace cirrovane::demo
