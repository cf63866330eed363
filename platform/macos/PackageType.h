#pragma once

#include <string_view>

namespace cirrovane {

/// Whether the system takes a folder whose name ends so for a package; without the dot. Callable on any thread.
bool isPackageExtension(std::string_view extension);

}  // namespace cirrovane
