#include "demo/FileContent.h"

#include "base/BoundedRead.h"
#include "demo/Failure.h"
#include "demo/Text.h"

#include <utility>

namespace cirrovane::demo {

std::optional<std::string> fileContent(const std::filesystem::path& path) {
  BoundedRead file = readBounded(path.native(), kBearableFileSize);
  if (!file.isOpen) {
    return std::nullopt;
  }
  if (file.error != 0) {
    throw CouldNot(printable(path.native()) + " cannot be read: " + systemMessage(file.error) + ".");
  }
  return std::move(file.content);
}

}  // namespace cirrovane::demo
