# What the application's and the command-line tool's bundles say of themselves. Made on every system, so that a mistake
# in it shows before a Mac sees it.

set(CIRROVANE_FEED_URL "" CACHE STRING "https address of the update feed; without one, updates are in the browser")
set(CIRROVANE_FEED_PUBLIC_KEY "" CACHE STRING "Public EdDSA key of the update feed, in base 64")
set(CIRROVANE_RELEASES_URL "" CACHE STRING "Web page that offers releases; without one, the program's own")
foreach(name FEED_URL RELEASES_URL)
  # The one character of an address that has a meaning of its own in a property list.
  string(REPLACE "&" "&amp;" CIRROVANE_${name}_XML "${CIRROVANE_${name}}")
endforeach()

configure_file(packaging/macos/Info.plist.in macos/Info.plist @ONLY)
configure_file(packaging/macos/cirrovanectl-Info.plist.in macos/cirrovanectl-Info.plist @ONLY)
