# kelvo_mac_bundle(TARGET PLUGIN): builds the executable as Kelvo.app with the plugin inside.
function(kelvo_mac_bundle target plugin)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME Kelvo
    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in
    MACOSX_BUNDLE_BUNDLE_NAME Kelvo
    MACOSX_BUNDLE_GUI_IDENTIFIER app.kelvo.Kelvo
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION})
  set_target_properties(${plugin} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY $<TARGET_BUNDLE_CONTENT_DIR:${target}>/PlugIns)
endfunction()
