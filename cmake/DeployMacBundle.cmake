# Makes a bundle independent of the machine that built it: copies Qt and its QML modules into it and signs it.
#
#   BUNDLE        the bundle
#   MACDEPLOYQT   the tool of Qt that deploys
#   QML_SOURCES   the folder with the QML files, whose imports are deployed
#   IDENTITY      the identity that signs it. With -, the bundle has no hardened runtime, because that loads no libraries
#                 that were signed without an identity.
#   ENTITLEMENTS  the entitlements for the hardened runtime
if(IDENTITY STREQUAL "-")
  set(deploy_signed -codesign=-)
  set(sign codesign --force --sign -)
else()
  set(deploy_signed -sign-for-notarization=${IDENTITY})
  set(sign codesign --force --options runtime --timestamp --entitlements ${ENTITLEMENTS} --sign ${IDENTITY})
endif()

foreach(command IN ITEMS
    "${MACDEPLOYQT};${BUNDLE};-qmldir=${QML_SOURCES};${deploy_signed}"
    # Again, because macdeployqt signs without entitlements.
    "${sign};${BUNDLE}"
    "codesign;--verify;--deep;--strict;${BUNDLE}")
  execute_process(COMMAND ${command} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endforeach()
