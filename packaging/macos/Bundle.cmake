# Cirrovane.app: the application with its icon, and the command-line tool inside.

# Also outside of an application's bundle, a program then knows its version.
target_link_options(cirrovanectl PRIVATE
  "LINKER:-sectcreate,__TEXT,__info_plist,${PROJECT_BINARY_DIR}/macos/cirrovanectl-Info.plist")
set_target_properties(cirrovanectl PROPERTIES LINK_DEPENDS "${PROJECT_BINARY_DIR}/macos/cirrovanectl-Info.plist")

if(TARGET cirrovane)
  set(make_icns "${PROJECT_SOURCE_DIR}/packaging/macos/make-icns")
  set(icon "${PROJECT_BINARY_DIR}/macos/Cirrovane.icns")
  add_custom_command(OUTPUT "${icon}"
    COMMAND "${make_icns}" "$<TARGET_FILE:draw_icon>" "${icon}"
    DEPENDS draw_icon "${make_icns}"
    VERBATIM)
  target_sources(cirrovane PRIVATE "${icon}")
  set_source_files_properties("${icon}" TARGET_DIRECTORY cirrovane PROPERTIES
    GENERATED ON
    MACOSX_PACKAGE_LOCATION Resources)

  set_target_properties(cirrovane PROPERTIES
    MACOSX_BUNDLE ON
    OUTPUT_NAME Cirrovane
    MACOSX_BUNDLE_INFO_PLIST "${PROJECT_BINARY_DIR}/macos/Info.plist"
    XCODE_ATTRIBUTE_CODE_SIGN_ENTITLEMENTS "${PROJECT_SOURCE_DIR}/packaging/macos/Cirrovane.entitlements"
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
  qt_generate_deploy_qml_app_script(TARGET cirrovane OUTPUT_SCRIPT deploy_script)
  install(SCRIPT "${deploy_script}")
endif()
