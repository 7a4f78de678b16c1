# What hosts find the installed library by: a CMake package and a pkg-config file. Included after the last storey.
include(CMakePackageConfigHelpers)

set(quilletPackageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/Quillet)

install(EXPORT QuilletTargets NAMESPACE Quillet:: DESTINATION ${quilletPackageDirectory})
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/QuilletConfig.cmake.in ${PROJECT_BINARY_DIR}/QuilletConfig.cmake
  INSTALL_DESTINATION ${quilletPackageDirectory}
  NO_SET_AND_CHECK_MACRO)
# Below version 1 a minor version may break hosts.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilletConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuilletConfig.cmake ${PROJECT_BINARY_DIR}/QuilletConfigVersion.cmake
  DESTINATION ${quilletPackageDirectory})

set(quilletPkgConfigDirectory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH quilletPrefixFromPkgConfig
  ${CMAKE_INSTALL_PREFIX}/${quilletPkgConfigDirectory} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" quilletPrefixFromPkgConfig ${quilletPrefixFromPkgConfig})

configure_file(${CMAKE_CURRENT_LIST_DIR}/quillet.pc.in ${PROJECT_BINARY_DIR}/quillet.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quillet.pc DESTINATION ${quilletPkgConfigDirectory})
