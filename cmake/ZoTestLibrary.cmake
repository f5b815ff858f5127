# zo_add_test_library(NAME SOURCES...)
#
# Builds a test library the way the front end loads it: NAME.so without a
# "lib" prefix, linked against the foundation only, placed beside the front
# end (or in ZO_TEST_LIBRARY_DIR when that is set).
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
    elseif(TARGET ZoTestSuite::ZoTestSuiteCLI)
      get_target_property(cli ZoTestSuite::ZoTestSuiteCLI LOCATION)
      get_filename_component(out_dir "${cli}" DIRECTORY)
    else()
      set(out_dir "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
  endif()
  set_target_properties(${NAME} PROPERTIES
    PREFIX ""
    LIBRARY_OUTPUT_DIRECTORY "${out_dir}"
    CXX_VISIBILITY_PRESET default)
endfunction()
