# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# Language and warnings for every target; the presets add optimisation and sanitizers.
set(CMAKE_C_STANDARD 11)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_C_EXTENSIONS ON)
set(CMAKE_CXX_EXTENSIONS ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Libraries and programs are written to the top of the build folder, so that tools and tests find them in one place.
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# Without a build type, build what can be installed.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()
# Most of the sources are tests, which are compiled more often than they run. The library has its own optimisation.
set(CMAKE_CXX_FLAGS_RELEASE "-O1 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O1 -DNDEBUG")

option(USBDEV_COVERAGE "Instrument for coverage" OFF)
option(USBDEV_FUZZ "Let libFuzzer drive the targets of fuzz/" OFF)
set(USBDEV_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

# The presets turn warnings into errors. Without a preset they stay warnings, for compilers that were never tried.
add_compile_options(-Wall -Wextra -Wconversion -Wshadow)
if(USBDEV_SANITIZE)
  add_compile_options(-fsanitize=${USBDEV_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${USBDEV_SANITIZE})
  # GCC describes what it checks for undefined behaviour in megabytes of tables, which each start of a program reads. A trap
  # needs none: the address sanitizer's handler then reports the line (`handle_sigill`), and only not which kind it is.
  if(USBDEV_SANITIZE STREQUAL "address,undefined" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fsanitize-undefined-trap-on-error)
  endif()
endif()
if(USBDEV_COVERAGE)
  # Threads count in the same places; a lost count would make others negative.
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
