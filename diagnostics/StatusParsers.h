#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace cirrovane {

// What the status sample takes from the text that a tool printed. The text may be anything, of any length: each reading
// takes time in proportion to it, and answers nothing where it does not find what it looks for.

/// The first line that contains `part`, without its line break; absent when no line does.
std::optional<std::string_view> firstLineContaining(std::string_view text, std::string_view part);

/// User plus system percentage in the first line of top's sample that says "CPU usage".
std::optional<double> cpuUsageFromTop(std::string_view text);

/// Degrees Celsius as osx-cpu-temp prints them: the number before a degree sign, or else the first number.
std::optional<double> temperatureFromSensor(std::string_view text);

/// Bytes in active, wired and compressed pages as vm_stat counts them; a count that is missing is 0. Absent when the
/// header does not tell the size of a page, or the sum is more than any memory.
std::optional<std::uint64_t> memoryUsedFromVMStat(std::string_view text);

}  // namespace cirrovane
