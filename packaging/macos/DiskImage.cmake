# The disk image: the application beside a link to the folder that it belongs in.

set(CPACK_GENERATOR DragNDrop)
set(CPACK_DMG_VOLUME_NAME "Cirrovane ${PROJECT_VERSION}")
set(CPACK_DMG_FORMAT UDZO)
set(CPACK_DMG_FILESYSTEM APFS)
# A license that has to be clicked away before the image opens protects nobody.
set(CPACK_DMG_SLA_USE_RESOURCE_FILE_LICENSE OFF)
set(CPACK_PACKAGE_FILE_NAME "Cirrovane-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
