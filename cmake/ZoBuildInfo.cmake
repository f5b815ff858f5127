# Writes BuildInfo.h (version and revision of the build) from git, at every
# build, touching the file only when its content changes:
#   cmake -DSOURCE_DIR=... -DOUTPUT=... -DVERSION=... -P ZoBuildInfo.cmake
set(revision "unknown")
find_package(Git QUIET)
if(GIT_FOUND)
  execute_process(COMMAND ${GIT_EXECUTABLE} rev-parse --short=12 HEAD
    WORKING_DIRECTORY ${SOURCE_DIR} OUTPUT_VARIABLE hash RESULT_VARIABLE hash_failed
    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  execute_process(COMMAND ${GIT_EXECUTABLE} rev-list --count HEAD
    WORKING_DIRECTORY ${SOURCE_DIR} OUTPUT_VARIABLE count RESULT_VARIABLE count_failed
    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT hash_failed AND NOT count_failed)
    set(revision "${count}:${hash}")
  endif()
endif()
file(WRITE "${OUTPUT}.tmp"
  "// Generated at build time; do not edit.\n"
  "#pragma once\n"
  "#define ZO_VERSION \"${VERSION}\"\n"
  "#define ZO_REVISION \"${revision}\"\n")
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
