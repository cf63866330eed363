// Runs a fuzz target over the files of a folder, without libFuzzer: what was once found stays found, with any compiler.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using std::filesystem::path;

std::vector<path> filesOf(const path& folder) {
  std::vector<path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) {
      files.push_back(entry.path());
    }
  }
  std::ranges::sort(files);
  return files;
}

bool replay(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  // As large as its contents and no larger, so that a sanitizer sees a read beyond them.
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  bytes.shrink_to_fit();
  if (!stream) {
    std::fprintf(stderr, "Cannot read %s\n", file.c_str());
    return false;
  }
  // Said before the run: a target that finds something ends the program.
  std::fprintf(stderr, "%s\n", file.filename().c_str());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::fprintf(stderr, "Usage: %s FOLDER\n", arguments[0]);
    return 2;
  }
  try {
    const std::vector<path> files = filesOf(arguments[1]);
    if (files.empty()) {
      std::fprintf(stderr, "%s holds no files: nothing was tested.\n", arguments[1]);
      return 1;
    }
    return std::ranges::all_of(files, replay) ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
