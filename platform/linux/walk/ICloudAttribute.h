#pragma once

#include "platform/FileSystem.h"

#include <optional>
#include <string_view>

namespace cirrovane {

/// Name of the extended attribute that holds an item's cloud state.
inline constexpr const char* kICloudAttributeName = "user.icloud";

/// The state that an attribute's bytes describe: lines of key=value in UTF-8. Sets everything but `isDirectory` and the
/// date, and only for a walk over everything what such walks alone tell; the error texts point into the given bytes.
/// Absent when the bytes are malformed: a key that the walk does not tell of can have any value.
std::optional<ResourceValues> parseICloudAttribute(std::string_view bytes, WalkScope scope = WalkScope::shown);

/// Whether a folder with this attribute may be listed. What else the attribute says, even where it is malformed, makes
/// no difference.
bool allowsListing(std::string_view bytes);

}  // namespace cirrovane
