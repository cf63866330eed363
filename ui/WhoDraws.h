#pragma once

#include <future>

namespace cirrovane {

/// What this program asks itself for, in a process of its own.
inline constexpr const char* kTellRendererOption = "--tell-renderer";

/// The question whether the toolkit's own painter is to draw, whose answer comes while the program goes on. Each system
/// has its own implementation.
std::future<bool> askWhoDraws();

}  // namespace cirrovane
