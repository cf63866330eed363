#include <cstdlib>

namespace cirrovane::test {
namespace {

/// No test may reach the machine's own message bus, by which it could put that machine to sleep. A test that needs one
/// has a bus of its own.
[[maybe_unused]] const bool kIsKeptFromTheMachine =
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1) == 0;

}  // namespace
}  // namespace cirrovane::test
