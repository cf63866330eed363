# Cirrovane.app: the application with its icon, and the command-line tool inside.

set(make_icns "${PROJECT_SOURCE_DIR}/packaging/macos/make-icns")
set(icon "${PROJECT_BINARY_DIR}/macos/Cirrovane.icns")
add_custom_command(OUTPUT "${icon}"
  COMMAND "${make_icns}" "$<TARGET_FILE:draw_icon>" "${icon}"
  DEPENDS draw_icon "${make_icns}"
  VERBATIM)
# Only a Mac can run the program that draws it.
if(CMAKE_HOST_APPLE)
  target_sources(cirrovane PRIVATE "${icon}")
endif()
set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

set_target_properties(cirrovane PROPERTIES
  MACOSX_BUNDLE ON
  OUTPUT_NAME Cirrovane
  MACOSX_BUNDLE_INFO_PLIST "${PROJECT_BINARY_DIR}/macos/Info.plist"
  INSTALL_RPATH "@executable_path/../Frameworks")
add_dependencies(cirrovane cirrovanectl)
add_custom_command(TARGET cirrovane POST_BUILD
  COMMAND "${CMAKE_COMMAND}" -E copy_if_different "$<TARGET_FILE:cirrovanectl>"
          "$<TARGET_BUNDLE_CONTENT_DIR:cirrovane>/MacOS/cirrovanectl"
  VERBATIM)
if(CIRROVANE_SPARKLE)
  set_target_properties(cirrovane PROPERTIES BUILD_RPATH "@executable_path/../Frameworks")
  # By ditto, because a framework is held together by links.
  add_custom_command(TARGET cirrovane POST_BUILD
    COMMAND ditto "${CIRROVANE_SPARKLE}" "$<TARGET_BUNDLE_CONTENT_DIR:cirrovane>/Frameworks/Sparkle.framework"
    VERBATIM)
endif()

install(TARGETS cirrovane BUNDLE DESTINATION .)
# The libraries that the application needs, Qt's among them, go into the bundle.
if(Qt6_VERSION VERSION_LESS 6.5)
  set(script_argument FILENAME_VARIABLE)
else()
  set(script_argument OUTPUT_SCRIPT)
endif()
qt_generate_deploy_qml_app_script(TARGET cirrovane ${script_argument} deploy_script)
install(SCRIPT "${deploy_script}")
