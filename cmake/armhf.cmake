# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# Builds for Debian's armhf, ARM of 32 bits, with Debian's cross compilers.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(debian_architecture armhf)
set(debian_triplet arm-linux-gnueabihf)
set(emulator qemu-arm)
# GCC 7.1 changed how some templates get their arguments, which concerns only those who mix it with an older one.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/DebianCross.cmake)
