# The macOS bundle Kelvo.app; see docs/macos.md.
set(KELVO_SIGNING_IDENTITY "-" CACHE STRING
  "The identity that signs the bundle, such as \"Developer ID Application: Name (Team)\"; - signs without an identity")
set(KELVO_NOTARY_PROFILE "" CACHE STRING "The keychain profile with which notarytool notarizes the disk image; may be empty")

# Builds the executable as NAME.app.
function(kelvo_mac_bundle_executable target name identifier)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME ${name}
    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in
    MACOSX_BUNDLE_BUNDLE_NAME ${name}
    MACOSX_BUNDLE_ICON_FILE Kelvo
    MACOSX_BUNDLE_GUI_IDENTIFIER ${identifier}
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION})
  # Other systems can compile the bundle, but neither run its tool for the icon nor sign.
  if(NOT CMAKE_CROSSCOMPILING)
    set(resources $<TARGET_BUNDLE_CONTENT_DIR:${target}>/Resources)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E make_directory ${resources}
      COMMAND kelvo-icns ${resources}/Kelvo.icns
      VERBATIM)
  endif()
endfunction()

# Signs files and bundles for this machine when the target has been built. The system delivers notifications to signed bundles
# only.
function(kelvo_mac_sign target)
  if(NOT CMAKE_CROSSCOMPILING)
    foreach(signed IN LISTS ARGN)
      add_custom_command(TARGET ${target} POST_BUILD COMMAND codesign --force --sign - ${signed} VERBATIM)
    endforeach()
  endif()
endfunction()

# kelvo_mac_demo_bundle(TARGET): builds the demonstration as KelvoDemo.app. Its settings and its permission to notify are its
# own.
function(kelvo_mac_demo_bundle target)
  kelvo_mac_bundle_executable(${target} KelvoDemo app.kelvo.KelvoDemo)
  kelvo_mac_sign(${target} $<TARGET_BUNDLE_DIR:${target}>)
endfunction()

# kelvo_mac_bundle(TARGET PLUGIN): builds the executable as Kelvo.app with the plugin inside, and signs it for this machine.
# Installing it deploys Qt into it and signs it with KELVO_SIGNING_IDENTITY.
function(kelvo_mac_bundle target plugin)
  kelvo_mac_bundle_executable(${target} Kelvo app.kelvo.Kelvo)
  set_target_properties(${plugin} PROPERTIES LIBRARY_OUTPUT_DIRECTORY $<TARGET_BUNDLE_CONTENT_DIR:${target}>/PlugIns)
  # The plugin is linked whenever the executable has changed.
  kelvo_mac_sign(${plugin} $<TARGET_FILE:${plugin}> $<TARGET_BUNDLE_DIR:${target}>)

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
