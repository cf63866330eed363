#pragma once

namespace cirrovane {

/// Has a program that runs for long give back what its scans needed for a moment. To be called before there is a
/// thread.
void limitHeaps();

}  // namespace cirrovane
