# SPDX-License-Identifier: Apache-2.0
# Installed: headers under include/mcstat, the library, a package config and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS mcstat EXPORT mcstatTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
set(MCSTAT_NOT_INSTALLED detail)
if(NOT MCSTAT_WITH_XERCES)
  list(APPEND MCSTAT_NOT_INSTALLED mcparsexml)
endif()
list(TRANSFORM MCSTAT_NOT_INSTALLED REPLACE "(.+)" "PATTERN;\\1;EXCLUDE")
install(
  DIRECTORY shared/cpp/src/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/mcstat
  FILES_MATCHING
  PATTERN "*.h"
  PATTERN "*.inc"
  ${MCSTAT_NOT_INSTALLED})
install(
  EXPORT mcstatTargets
  NAMESPACE mcstat::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/mcstat)

configure_package_config_file(
  cmake/mcstatConfig.cmake.in ${PROJECT_BINARY_DIR}/mcstatConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/mcstat)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mcstatConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/mcstatConfig.cmake
              ${PROJECT_BINARY_DIR}/mcstatConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/mcstat)

# Relative to the file itself, so that an installed tree may be moved.
file(RELATIVE_PATH MCSTAT_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/mcstat.pc.in ${PROJECT_BINARY_DIR}/mcstat.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mcstat.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
