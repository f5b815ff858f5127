# Install rules and the CMake package: find_package(ZoTestSuite) gives
# ZoTestSuite::Foundation, ZoTestSuite::ZoTestSuite, ZoTestSuite::ZoTestSuiteCLI
# and the functions zo_add_test_library() and zo_add_data_tests().
include(CMakePackageConfigHelpers)

set(zo_targets ZoFoundation ZoTestSuite)
if(TARGET ZoTestSuiteCLI)
  list(APPEND zo_targets ZoTestSuiteCLI)
endif()
install(TARGETS ${zo_targets} EXPORT ZoTestSuiteTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZoTestSuite ${CMAKE_INSTALL_INCLUDEDIR}/ZoTestSuite/foundation)
install(DIRECTORY Testing/ZoTestSuite/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZoTestSuite
  FILES_MATCHING PATTERN "*.h" PATTERN "platform" EXCLUDE)
install(EXPORT ZoTestSuiteTargets NAMESPACE ZoTestSuite::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZoTestSuite)
configure_package_config_file(cmake/ZoTestSuiteConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/ZoTestSuiteConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZoTestSuite)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ZoTestSuiteConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/ZoTestSuiteConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ZoTestSuiteConfigVersion.cmake
  cmake/ZoTestLibrary.cmake
  cmake/ZoDataTestsDiscovery.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZoTestSuite)

# The same package straight from the build tree.
export(EXPORT ZoTestSuiteTargets NAMESPACE ZoTestSuite::
  FILE ${CMAKE_BINARY_DIR}/ZoTestSuiteTargets.cmake)
set(ZO_BUILD_TREE_PACKAGE ON)
configure_file(cmake/ZoTestSuiteBuildTreeConfig.cmake.in
  ${CMAKE_BINARY_DIR}/ZoTestSuiteConfig.cmake @ONLY)
file(COPY cmake/ZoTestLibrary.cmake cmake/ZoDataTestsDiscovery.cmake DESTINATION ${CMAKE_BINARY_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ZoTestSuiteConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
