#pragma once

#include "platform/FileSystem.h"

#include <optional>
#include <string_view>

namespace cirrovane {

/// Name of the extended attribute that holds an item's cloud state.
inline constexpr const char* kICloudAttributeName = "user.icloud";

/// The state that an attribute's bytes describe: lines of key=value in UTF-8. Sets everything but `isDirectory` and the
/// date; the error texts point into the given bytes. Absent when the bytes are malformed.
std::optional<ResourceValues> parseICloudAttribute(std::string_view bytes);

/// Whether a folder with this attribute may be listed. What else the attribute says, even where it is malformed, makes
/// no difference.
bool allowsListing(std::string_view bytes);

}  // namespace cirrovane
