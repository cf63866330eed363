#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace cirrovane {

/// Seconds from the command line as a time; so many that they mean "for ever" are as long as the clock's arithmetic
/// takes.
std::optional<std::chrono::nanoseconds> asDuration(std::optional<double> seconds);

/// What is wrong with a text for `--timeout`; empty when nothing is.
std::string complaintAboutTimeout(const std::string& text);

}  // namespace cirrovane
