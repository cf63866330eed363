# Read by ctest before it runs a test: none may reach the machine's own message bus, by which it could put that machine to
# sleep.
set(ENV{DBUS_SYSTEM_BUS_ADDRESS} "unix:path=/nonexistent/bus")
