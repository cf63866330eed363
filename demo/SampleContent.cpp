#include "demo/SampleContent.h"

#include "base/Path.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace cirrovane::demo {
namespace {

using namespace std::string_view_literals;

struct Format {
  std::string_view extension;
  std::string_view beginning;
  /// Empty: noise follows.
  std::string_view repeatedLine;
};

constexpr std::string_view kProse = "Nothing here is real: it is a page of a demonstration, to be changed at will.\n";

constexpr std::array kFormats = std::to_array<Format>({
    {"txt", "", kProse},
    {"md", "# Notes\n\n", "- Nothing here is real: it is a page of a demonstration.\n"},
    {"csv", "Date,Description,Hours,Amount\n", "2026-03-02,Layout and corrections,2.5,212.50\n"},
    {"json", "{\"format\": \"png\"}\n", "\n"},
    {"ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n", "X-NOTE:Demonstration\r\n"},
    {"svg",
     "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 64 64\"><circle cx=\"32\" cy=\"32\" r=\"30\"/></svg>\n",
     "<!-- Demonstration -->\n"},
    {"plist", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict/></plist>\n", "<!-- -->\n"},
    {"pdf", "%PDF-1.7\n", ""},
    {"png", "\x89PNG\r\n\x1a\n"sv, ""},
    {"jpg", "\xff\xd8\xff\xe0\0\x10JFIF\0"sv, ""},
    {"heic",
     "\0\0\0\x18"
     "ftypheic"sv,
     ""},
    {"mov",
     "\0\0\0\x14"
     "ftypqt  "sv,
     ""},
    {"m4a",
     "\0\0\0\x1c"
     "ftypM4A "sv,
     ""},
    {"zip", "PK\x03\x04"sv, ""},
    {"docx", "PK\x03\x04"sv, ""},
    {"numbers", "PK\x03\x04"sv, ""},
    {"psd", "8BPS"sv, ""},
    {"dwg", "AC1032"sv, ""},
    {"sqlite", "SQLite format 3\0"sv, ""},
});

constexpr Format kUnknown = {"", "", ""};

const Format& formatOf(std::string_view path) {
  const std::string_view name = lastPathComponent(path);
  const std::size_t dot = name.rfind('.');
  const std::string_view extension = dot == std::string_view::npos ? "" : name.substr(dot + 1);
  const auto* found = std::ranges::find(kFormats, extension, &Format::extension);
  return found == kFormats.end() ? kUnknown : *found;
}

/// Bytes without a pattern that a compressing file system could use, the same for the same path.
class Noise {
 public:
  explicit Noise(std::string_view path) {
    for (const char letter : path) {
      state_ = (state_ ^ static_cast<unsigned char>(letter)) * kFactor;
    }
  }
  char next() {
    state_ = state_ * kFactor + 1;
    return static_cast<char>(state_ >> 56);
  }

 private:
  static constexpr std::uint64_t kFactor = 6364136223846793005U;
  std::uint64_t state_ = 1442695040888963407U;
};

}  // namespace

std::string sampleContent(std::string_view path, std::size_t size) {
  const Format& format = formatOf(path);
  std::string content(format.beginning);
  content.reserve(size + format.repeatedLine.size());
  if (format.repeatedLine.empty()) {
    Noise noise(path);
    while (content.size() < size) {
      content += noise.next();
    }
  }
  while (content.size() < size) {
    content += format.repeatedLine;
  }
  content.resize(size);
  return content;
}

}  // namespace cirrovane::demo
