# The build-time half of zo_add_data_tests: asks the front end which classes
# and cases the test library finds in the data directory (--query) and
# writes one CTest test for each into LIST_FILE, which CTest includes.
#
#   cmake -DSETTINGS=<settings file written by zo_add_data_tests> -P ZoDataTestsDiscovery.cmake
#
# The settings name FRONT_END, LIBRARY, DATA_DIR, ARGS, PER (CLASS or
# CASE), TEST_PREFIX and LIST_FILE.
cmake_minimum_required(VERSION 3.25)
include("${SETTINGS}")

set(run_command "${FRONT_END}" -d "${DATA_DIR}" --dll "${LIBRARY}" ${ARGS})
execute_process(COMMAND ${run_command} --query --no-color
  RESULT_VARIABLE status OUTPUT_VARIABLE listing ERROR_VARIABLE errors)
if(NOT status EQUAL 0)
  string(JOIN " " shown ${run_command} --query)
  message(FATAL_ERROR "zo_add_data_tests: '${shown}' failed (${status}):\n${listing}${errors}")
endif()

# A bracket argument holds any text but its own closing bracket.
function(bracket text result)
  set(equals "=")
  while(text MATCHES "\\]${equals}\\]")
    string(APPEND equals "=")
  endwhile()
  set(${result} "[${equals}[${text}]${equals}]" PARENT_SCOPE)
endfunction()

# The listing: a class's data directory on a line of its own, its cases
# below it indented by four blanks, a blank line; then the totals. A class
# in several directories gives one test.
string(REPLACE ";" "\\;" listing "${listing}")
string(REPLACE "\n" ";" lines "${listing}")
set(class "")
set(names)
foreach(line IN LISTS lines)
  if(line MATCHES "^    (.+)$")
    if(PER STREQUAL "CASE" AND NOT class STREQUAL "")
      list(APPEND names "${class}:${CMAKE_MATCH_1}")
    endif()
  elseif(line MATCHES "^(/.*[^/])/*$")
    get_filename_component(class "${CMAKE_MATCH_1}" NAME)
    if(PER STREQUAL "CLASS")
      list(APPEND names "${class}")
    endif()
  elseif(line STREQUAL "")
    set(class "")
  endif()
endforeach()
list(REMOVE_DUPLICATES names)

set(content "# Written by zo_add_data_tests after each build of the test library.\n")
set(quoted_command)
foreach(word IN LISTS run_command)
  bracket("${word}" quoted)
  string(APPEND quoted_command " ${quoted}")
endforeach()
foreach(name IN LISTS names)
  bracket("${TEST_PREFIX}${name}" quoted_name)
  bracket("${name}" quoted_pattern)
  string(APPEND content
    "add_test(${quoted_name}${quoted_command} --include ${quoted_pattern} --full-match --no-color)\n"
    "set_tests_properties(${quoted_name} PROPERTIES LABELS ZoTestSuite)\n")
endforeach()
file(WRITE "${LIST_FILE}" "${content}")
