#pragma once

#include <string_view>

namespace cirrovane {

/// Whether a folder of this name is a package: shown to the user as one document, so that a scan does not enter it.
bool isPackageName(std::string_view name);

}  // namespace cirrovane
