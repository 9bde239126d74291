# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# Builds for Debian's arm64, ARM of 64 bits, with Debian's cross compilers.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(debian_architecture arm64)
set(debian_triplet aarch64-linux-gnu)
set(emulator qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/DebianCross.cmake)
