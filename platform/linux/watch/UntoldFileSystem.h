#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace cirrovane {

/// The kind of a file system that others may change without this system's knowledge, by the number that statfs gives;
/// absent for one whose changes are all told.
std::optional<std::string_view> untoldFileSystem(std::int64_t type);

}  // namespace cirrovane
