# The .deb, as CPack makes it.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CIRROVANE_DEBIAN_REVISION}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CIRROVANE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Stripped by the script below, which also takes away what a compiler says of itself.
set(CPACK_STRIP_FILES OFF)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/Strip.cmake")

# Libraries are found by what the programs link; what the window imports is known by its name alone.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(modules qtqml qtqml-models qtqml-workerscript qtquick qtquick-controls qtquick-layouts
    qtquick-templates qtquick-window)
list(TRANSFORM modules PREPEND qml6-module-)
list(JOIN modules ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-inter, fonts-quicksand, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion, jq")
set(CPACK_PACKAGE_DESCRIPTION
"Is it safe, right now, to close, sleep or shut down a Mac without losing work
that has not yet reached iCloud Drive? You mark a few critical folders, and
Cirrovane answers yes or no, with the reasons: what is still waiting to
upload, what is stuck, what is in conflict and what is only in the cloud. It
reads the metadata of files only, and never downloads one.
.
Linux has no iCloud Drive. There, Cirrovane looks at a folder that stands for
a Mac's disk: a demonstration, or the copy of a Mac whose trouble is to be
understood.
.
This package holds the window and cirrovanectl, which gives the same answers
at the terminal.")
