# zo_add_test_library(NAME SOURCES...)
#
# Builds a test library the way the front end loads it: NAME.so without a
# "lib" prefix, linked against the foundation only. It goes into
# ZO_TEST_LIBRARY_DIR when that is set, else beside the front end when the
# front end is built in the same build tree, else into the current build
# directory: an installed front end's directory is not the project's to
# write into (and often not writable). Such a library is loaded by its
# path, `ZoTestSuiteCLI --dll build/NAME.so`, or through zo_add_data_tests.
#
# zo_add_data_tests(TARGET <test library> DATA_DIR <dir> [ARGS ...]
#                   [PER_CLASS|PER_CASE] [TEST_PREFIX <prefix>])
#
# Registers one CTest test for each test class (PER_CLASS, the default) or
# each case (PER_CASE) that the front end finds in DATA_DIR with the
# library: after every build of TARGET the front end lists them (--query),
# and CTest reads the list when it runs. Each test runs the front end on
# exactly its class ("--include CLASS --full-match") or case
# ("--include CLASS:CASE --full-match"), with ARGS added to the command
# line of the listing and of every test. Test names are the class name, or
# class and case joined by ':', after TEST_PREFIX.

set(_ZO_DATA_TESTS_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/ZoDataTestsDiscovery.cmake")

function(zo_add_test_library NAME)
  if(NOT ARGN)
    message(FATAL_ERROR "zo_add_test_library(${NAME}) needs at least one source file")
  endif()
  add_library(${NAME} SHARED ${ARGN})
  target_link_libraries(${NAME} PRIVATE ZoTestSuite::Foundation)
  set(out_dir "${ZO_TEST_LIBRARY_DIR}")
  if(NOT out_dir)
    if(TARGET ZoTestSuiteCLI)
      set(out_dir "${ZO_BIN_DIR}")
    else()
      set(out_dir "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
  endif()
  set_target_properties(${NAME} PROPERTIES
    PREFIX ""
    LIBRARY_OUTPUT_DIRECTORY "${out_dir}"
    CXX_VISIBILITY_PRESET default)
endfunction()

# The front end that zo_add_data_tests runs: the one of this build tree, or
# the package's.
function(_zo_front_end_target result)
  if(TARGET ZoTestSuiteCLI)
    set(${result} ZoTestSuiteCLI PARENT_SCOPE)
  elseif(TARGET ZoTestSuite::ZoTestSuiteCLI)
    set(${result} ZoTestSuite::ZoTestSuiteCLI PARENT_SCOPE)
  else()
    message(FATAL_ERROR "zo_add_data_tests: the ZoTestSuite package has no ZoTestSuiteCLI")
  endif()
endfunction()

function(zo_add_data_tests)
  cmake_parse_arguments(PARSE_ARGV 0 arg "PER_CLASS;PER_CASE" "TARGET;DATA_DIR;TEST_PREFIX" "ARGS")
  if(NOT arg_TARGET OR NOT arg_DATA_DIR)
    message(FATAL_ERROR "zo_add_data_tests needs TARGET <test library> and DATA_DIR <dir>")
  endif()
  if(arg_PER_CLASS AND arg_PER_CASE)
    message(FATAL_ERROR "zo_add_data_tests: PER_CLASS and PER_CASE exclude each other")
  endif()
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zo_add_data_tests: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  set(per CLASS)
  if(arg_PER_CASE)
    set(per CASE)
  endif()
  get_filename_component(data_dir "${arg_DATA_DIR}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
  _zo_front_end_target(front_end)
  if(TARGET ZoTestSuiteCLI)
    add_dependencies(${arg_TARGET} ZoTestSuiteCLI)
  endif()
  # One set of files per call, so that a library may register its classes
  # and, under another prefix, its cases as well.
  string(MAKE_C_IDENTIFIER "${arg_TARGET}_${per}_${arg_TEST_PREFIX}" stem)
  set(list_file "${CMAKE_CURRENT_BINARY_DIR}/${stem}_data_tests.cmake")
  set(include_file "${CMAKE_CURRENT_BINARY_DIR}/${stem}_data_tests_include.cmake")
  set(settings_file "${CMAKE_CURRENT_BINARY_DIR}/${stem}_data_tests_settings.cmake")
  # The settings go through a file, so that arguments with blanks or
  # semicolons reach the discovery unchanged.
  set(settings
    "set(FRONT_END [==[$<TARGET_FILE:${front_end}>]==])\n"
    "set(LIBRARY [==[$<TARGET_FILE:${arg_TARGET}>]==])\n"
    "set(DATA_DIR [==[${data_dir}]==])\n"
    "set(PER ${per})\n"
    "set(TEST_PREFIX [==[${arg_TEST_PREFIX}]==])\n"
    "set(LIST_FILE [==[${list_file}]==])\n")
  string(JOIN "" settings ${settings})
  string(APPEND settings "set(ARGS)\n")
  foreach(word IN LISTS arg_ARGS)
    string(APPEND settings "list(APPEND ARGS [==[${word}]==])\n")
  endforeach()
  file(GENERATE OUTPUT "${settings_file}" CONTENT "${settings}")
  add_custom_command(TARGET ${arg_TARGET} POST_BUILD
    COMMAND "${CMAKE_COMMAND}" "-DSETTINGS=${settings_file}" -P "${_ZO_DATA_TESTS_SCRIPT}"
    VERBATIM)
  file(WRITE "${include_file}"
    "if(EXISTS \"${list_file}\")\n"
    "  include(\"${list_file}\")\n"
    "else()\n"
    "  add_test(${arg_TARGET}_NOT_BUILT ${arg_TARGET}_NOT_BUILT)\n"
    "endif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${include_file}")
endfunction()
