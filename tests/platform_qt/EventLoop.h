#pragma once

#include <functional>

namespace cirrovane::test {

/// Handles events until the condition holds; answers false when it has not come true for a very long time.
bool handleEventsUntil(const std::function<bool()>& condition);
/// Handles the events that are there.
void handleEvents();

}  // namespace cirrovane::test
