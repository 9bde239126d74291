# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# The rest of a toolchain file, which has set the architecture's names. Headers and libraries are only those of Debian's
# packages in the sysroot, which `./dev build ARCHITECTURE` unpacks; another one can be given with -DCMAKE_SYSROOT=.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${debian_triplet}-gcc)
set(CMAKE_CXX_COMPILER ${debian_triplet}-g++)
if(NOT CMAKE_SYSROOT)
  get_filename_component(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/${debian_architecture} ABSOLUTE)
endif()
if(NOT EXISTS ${CMAKE_SYSROOT})
  message(FATAL_ERROR "${CMAKE_SYSROOT} is missing; `./dev build ${debian_architecture}` makes it")
endif()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${debian_triplet}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)

# Runs the tests; the commands that they start are the machine's own.
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${CMAKE_SYSROOT})
