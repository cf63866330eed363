# Cirrovane.app: the application with its icon, and the command-line tool inside.

option(CIRROVANE_DEPLOY "Install the application together with the libraries that it needs" ON)

set(bundle_tool "${PROJECT_SOURCE_DIR}/packaging/macos/bundle")
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

set(information "${PROJECT_BINARY_DIR}/macos/Info.plist")
set_target_properties(cirrovane PROPERTIES
  MACOSX_BUNDLE ON
  OUTPUT_NAME Cirrovane
  MACOSX_BUNDLE_INFO_PLIST "${information}"
  INSTALL_RPATH "@executable_path/../Frameworks")

set(framework "")
if(CIRROVANE_SPARKLE)
  set_target_properties(cirrovane PROPERTIES BUILD_RPATH "@executable_path/../Frameworks")
  # By ditto, because a framework is held together by links.
  set(framework
    COMMAND ditto "${CIRROVANE_SPARKLE}" "$<TARGET_BUNDLE_CONTENT_DIR:cirrovane>/Frameworks/Sparkle.framework")
endif()
# By a file of its own, so that a new tool alone gets into the bundle as well. The linker's signature knows nothing of
# the bundle, and the system takes notifications only from an application that it knows again.
set(finished "${PROJECT_BINARY_DIR}/macos/bundle-finished")
add_custom_command(OUTPUT "${finished}"
  COMMAND "${CMAKE_COMMAND}" -E copy "$<TARGET_FILE:cirrovanectl>"
          "$<TARGET_BUNDLE_CONTENT_DIR:cirrovane>/MacOS/cirrovanectl"
  ${framework}
  COMMAND "${bundle_tool}" sign "$<TARGET_BUNDLE_DIR:cirrovane>"
  COMMAND "${CMAKE_COMMAND}" -E touch "${finished}"
  DEPENDS cirrovane cirrovanectl "${icon}" "${information}" "${bundle_tool}"
  VERBATIM)
add_custom_target(cirrovane_bundle ALL DEPENDS "${finished}")

install(TARGETS cirrovane BUNDLE DESTINATION .)
set(run_on_installed [[
function(run_on_installed)
  list(INSERT ARGN 1 "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/Cirrovane.app")
  execute_process(COMMAND "@bundle_tool@" ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()]])
string(CONFIGURE "${run_on_installed}" run_on_installed @ONLY)
install(CODE "${run_on_installed}")
if(CIRROVANE_DEPLOY)
  # The libraries that the application needs, Qt's among them, go into the bundle.
  if(Qt6_VERSION VERSION_LESS 6.5)
    set(script_argument FILENAME_VARIABLE)
  else()
    set(script_argument OUTPUT_SCRIPT)
  endif()
  qt_generate_deploy_qml_app_script(TARGET cirrovane ${script_argument} deploy_script)
  install(SCRIPT "${deploy_script}")
  install(CODE "run_on_installed(complete \"${QT6_INSTALL_PREFIX}/${QT6_INSTALL_LIBS}\")")
else()
  # A package manager that keeps Qt itself wants it once.
  set_target_properties(cirrovane PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
endif()
# What was changed has lost its signature.
install(CODE "run_on_installed(sign)")
if(CIRROVANE_DEPLOY)
  install(CODE "run_on_installed(check)")
endif()
