#pragma once

#include "stores/ScanSnapshot.h"

#include <span>
#include <string>

namespace cirrovane {

/// The scores of some scans over time, as an SVG element; empty for none. Nothing of it comes from a text of the
/// packet.
std::string timelinePicture(std::span<const ScanSnapshot> snapshots);

/// A time to the minute: "2026-11-15 18:21 UTC".
std::string pageTime(Time time);

}  // namespace cirrovane
