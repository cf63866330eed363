#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cirrovane::demo {

/// Something for a file to hold: exactly `size` bytes, the same each time. Text files can be read; others begin as
/// their format does and go on with noise.
std::string sampleContent(std::string_view path, std::size_t size);

}  // namespace cirrovane::demo
