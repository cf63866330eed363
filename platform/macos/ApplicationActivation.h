#pragma once

namespace cirrovane {

/// Makes this application the active one, as after a click on it in the Dock. Main thread only.
void activateApplication();

}  // namespace cirrovane
