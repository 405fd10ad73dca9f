# kelvo_mac_bundle(TARGET): the executable is built as Kelvo.app.
function(kelvo_mac_bundle target)
  set_target_properties(${target} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME Kelvo
    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/macos/Info.plist.in
    MACOSX_BUNDLE_BUNDLE_NAME Kelvo
    MACOSX_BUNDLE_GUI_IDENTIFIER app.kelvo.Kelvo
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION})
endfunction()
