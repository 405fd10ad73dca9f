# CPack runs this after it has made the disk image. Signs it with CPACK_KELVO_SIGNING_IDENTITY and notarizes it with the
# keychain profile CPACK_KELVO_NOTARY_PROFILE. Does nothing without a profile.
if(NOT CPACK_KELVO_NOTARY_PROFILE)
  return()
endif()
if(CPACK_KELVO_SIGNING_IDENTITY STREQUAL "-")
  message(FATAL_ERROR "Apple notarizes only what a Developer ID has signed: set KELVO_SIGNING_IDENTITY")
endif()

foreach(image IN LISTS CPACK_PACKAGE_FILES)
  foreach(command IN ITEMS
      "codesign;--force;--timestamp;--sign;${CPACK_KELVO_SIGNING_IDENTITY};${image}"
      "xcrun;notarytool;submit;${image};--keychain-profile;${CPACK_KELVO_NOTARY_PROFILE};--wait"
      # Fails if the image was not accepted.
      "xcrun;stapler;staple;${image}")
    execute_process(COMMAND ${command} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endforeach()
