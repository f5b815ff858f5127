# Builds the example test library as a project of its own against the
# ZoTestSuite package and loads what it made.
#
#   cmake -DMODE=install|build-tree -DPROJECT_BUILD_DIR=... -DEXAMPLE_DIR=...
#         -DWORK_DIR=... -DLOADER=... -DGENERATOR=... -DCXX_COMPILER=...
#         -P PackageCheck.cmake
#
# install:    installs PROJECT_BUILD_DIR into WORK_DIR/prefix and finds the
#             package through CMAKE_PREFIX_PATH; the library goes where
#             zo_add_test_library puts it by default, the example's own
#             build tree, never into the installed package.
# build-tree: finds the package through ZoTestSuite_DIR=PROJECT_BUILD_DIR;
#             the library goes to ZO_TEST_LIBRARY_DIR, so that nothing is
#             written into the project's own build tree.
cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    string(JOIN " " command ${ARGN})
    message(FATAL_ERROR "failed (${rc}): ${command}\n${out}")
  endif()
  message(STATUS "${out}")
endfunction()

set(library_name WordCountTests)
set(class_name WordCountTest)
set(example_build ${WORK_DIR}/example)
file(REMOVE_RECURSE ${WORK_DIR})

if(MODE STREQUAL "install")
  set(prefix ${WORK_DIR}/prefix)
  run(${CMAKE_COMMAND} --install ${PROJECT_BUILD_DIR} --prefix ${prefix})
  set(package_args -DCMAKE_PREFIX_PATH=${prefix})
  set(candidates ${example_build}/${library_name}.so)
elseif(MODE STREQUAL "build-tree")
  set(package_args -DZoTestSuite_DIR=${PROJECT_BUILD_DIR} -DZO_TEST_LIBRARY_DIR=${WORK_DIR}/libraries)
  set(candidates ${WORK_DIR}/libraries/${library_name}.so)
else()
  message(FATAL_ERROR "MODE must be install or build-tree, not '${MODE}'")
endif()

run(${CMAKE_COMMAND} -S ${EXAMPLE_DIR} -B ${example_build} -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=Release ${package_args})
run(${CMAKE_COMMAND} --build ${example_build})

set(library "")
foreach(candidate ${candidates})
  if(EXISTS ${candidate})
    set(library ${candidate})
    break()
  endif()
endforeach()
if(NOT library)
  message(FATAL_ERROR "the example built no ${library_name}.so (looked for: ${candidates})")
endif()

run(${LOADER} ${library} ${class_name} ${EXAMPLE_DIR}/data/${class_name}/)
