#include "platform/macos/plain/SystemQuit.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

/// To log out, to log out for certain, to restart and to shut down; the last two also as what their dialogs ask for.
constexpr std::array kReasons = {fourCharacterCode("logo"), fourCharacterCode("rlgo"), fourCharacterCode("rest"),
                                 fourCharacterCode("rrst"), fourCharacterCode("shut"), fourCharacterCode("rsdn")};

}  // namespace

bool isSystemQuit(std::optional<std::uint32_t> reason) {
  return reason && std::ranges::find(kReasons, *reason) != kReasons.end();
}

}  // namespace cirrovane
