#pragma once

namespace cirrovane {

/// Makes the calling thread give way to the others on this machine for as long as it lives, at the processor and at the
/// disk. A system that refuses leaves it as it was.
void giveWay();

}  // namespace cirrovane
