#pragma once

#include <string>

namespace cirrovane::test {

/// Sets a file's iCloud attribute to the given bytes. Throws where the file system has no attributes. For a folder that
/// stands for a Mac, so on Linux alone.
void setICloudAttribute(const std::string& path, const std::string& content);

}  // namespace cirrovane::test
