#pragma once

#include "platform/Bundle.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// Where the application of a program is: a bundle's place in the prefix that the program was installed below, which
/// may be any folder, and the program itself where it was not installed.
std::string applicationLocation(const std::filesystem::path& executable);

/// This program: a bundle's place in the install prefix for an installed one, else the bare executable, and in either
/// case this build's own version.
class HostBundle final : public Bundle {
 public:
  std::string location() const override;
  std::optional<std::string> infoText(std::string_view key) const override;
};

}  // namespace cirrovane
