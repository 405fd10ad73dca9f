# Accepts the pictures that a test run rejected as golden pictures: moves FROM/<name>.png to TO.
if(NOT EXISTS ${FROM})
  return()
endif()
# Tests share a folder, and the build runs their targets at the same time.
file(LOCK ${FROM} DIRECTORY GUARD PROCESS TIMEOUT 60)
file(GLOB rejected ${FROM}/*.png)
list(FILTER rejected EXCLUDE REGEX "\\.diff\\.png$")
foreach(picture IN LISTS rejected)
  file(COPY ${picture} DESTINATION ${TO})
  file(REMOVE ${picture})
  message(STATUS "Accepted ${picture}")
endforeach()
