# The macOS bundle Kelvo.app; see docs/macos.md.
set(KELVO_SIGNING_IDENTITY "-" CACHE STRING
  "The identity that signs the bundle, such as \"Developer ID Application: Name (Team)\"; - signs without an identity")
set(KELVO_NOTARY_PROFILE "" CACHE STRING "The keychain profile with which notarytool notarizes the disk image; may be empty")

# kelvo_mac_bundle(TARGET PLUGIN): builds the executable as Kelvo.app with the plugin inside, and signs it for this machine.
# Installing it deploys Qt into it and signs it with KELVO_SIGNING_IDENTITY.
function(kelvo_mac_bundle target plugin)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME Kelvo
    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in
    MACOSX_BUNDLE_BUNDLE_NAME Kelvo
    MACOSX_BUNDLE_ICON_FILE Kelvo
    MACOSX_BUNDLE_GUI_IDENTIFIER app.kelvo.Kelvo
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION})
  set(contents $<TARGET_BUNDLE_CONTENT_DIR:${target}>)
  set_target_properties(${plugin} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${contents}/PlugIns)
  # Other systems can compile the bundle, but neither run its tool for the icon nor sign.
  if(NOT CMAKE_CROSSCOMPILING)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Resources
      COMMAND kelvo-icns ${contents}/Resources/Kelvo.icns
      VERBATIM)
    # The plugin is linked whenever the executable has changed. The system delivers notifications to signed bundles only.
    add_custom_command(TARGET ${plugin} POST_BUILD
      COMMAND codesign --force --sign - $<TARGET_FILE:${plugin}>
      COMMAND codesign --force --sign - $<TARGET_BUNDLE_DIR:${target}>
      VERBATIM)
  endif()

  install(TARGETS ${target} BUNDLE DESTINATION .)
  find_program(MACDEPLOYQT macdeployqt HINTS ${QT6_INSTALL_PREFIX}/bin)
  install(CODE "
    set(BUNDLE \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Kelvo.app\")
    set(MACDEPLOYQT \"${MACDEPLOYQT}\")
    set(QML_SOURCES \"${PROJECT_SOURCE_DIR}/src\")
    set(ENTITLEMENTS \"${PROJECT_SOURCE_DIR}/packaging/macos/Kelvo.entitlements\")
    set(IDENTITY \"${KELVO_SIGNING_IDENTITY}\")")
  install(SCRIPT ${PROJECT_SOURCE_DIR}/cmake/DeployMacBundle.cmake)
endfunction()
