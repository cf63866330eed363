#pragma once

#include "base/Result.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace cirrovane {

/// Fills the beginning of a space with the next bytes and says how many: 0 at the end, and a failure where they cannot
/// be had.
using ByteSource = std::function<Result<std::size_t>(std::span<char>)>;

/// The bytes of whatever may be read at a path, of any size; "-" is standard input. Opening a pipe waits for its
/// writer.
Result<ByteSource> openByteSource(const std::string& path);

/// The bytes of a text, which outlives the source.
ByteSource byteSourceOf(std::string_view text);

}  // namespace cirrovane
