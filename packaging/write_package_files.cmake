# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# Writes the files by which CMake and pkg-config find the library, for the prefix that it is being installed to.
include(CMakePackageConfigHelpers)
get_filename_component(CMAKE_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX} ABSOLUTE)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/usbdevlibConfig.cmake.in ${output}/usbdevlibConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/usbdevlib
  PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR
)
write_basic_package_version_file(${output}/usbdevlibConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)

# Either folder may have been given with its whole path.
foreach(folder LIBDIR INCLUDEDIR)
  if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_${folder}})
    set(CMAKE_INSTALL_${folder} \${prefix}/${CMAKE_INSTALL_${folder}})
  endif()
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/usbdevlib.pc.in ${output}/usbdevlib.pc @ONLY)
