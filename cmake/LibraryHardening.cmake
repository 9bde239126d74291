# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# How the library is compiled and linked; nothing else is built like this. It runs inside foreign processes on hosts
# without a C++ run-time, exports only the listed names, and is protected against bad input.

# Link nothing of the C++ run-time, which may be missing.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES "")

include(CheckCXXCompilerFlag)
# The library mostly waits for commands, so larger code would not make it faster. Older compilers know only -Os.
check_cxx_compiler_flag(-Oz USBDEV_HAS_OZ)
set(usbdev_small_code $<IF:$<BOOL:${USBDEV_HAS_OZ}>,-Oz,-Os>)
set(usbdev_small_links)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
  # The library is so small that one instruction reaches all of it; nothing walks its frames without unwinding tables.
  list(APPEND usbdev_small_code -mcmodel=tiny -fomit-frame-pointer -momit-leaf-frame-pointer)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
  # Here nearly every function begins with a probe of the stack; the linker makes fewer of them. The objects are complete
  # without the linker, for tests that are made of them.
  set(usbdev_small_links -flto=auto -fno-gcse -fno-tree-pre -fno-code-hoisting -fno-schedule-insns2
    -fira-hoist-pressure -fira-loop-pressure)
  list(APPEND usbdev_small_code ${usbdev_small_links} -ffat-lto-objects)
endif()

# usbdev_library_code(TARGET): only the compile settings, for any target that is built from the library's sources.
function(usbdev_library_code target)
  set(optimised $<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>>)
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE
    -fno-exceptions
    -fno-rtti
    -fno-threadsafe-statics # their guards would need the C++ run-time; all local statics are constants
    -ffunction-sections
    -fdata-sections
    -fstack-protector-strong
    -fstack-clash-protection
    $<$<CONFIG:Release>:${usbdev_small_code}>
  )
  if(NOT USBDEV_SANITIZE)
    target_compile_options(${target} PRIVATE $<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
  endif()
endfunction()

# usbdev_harden(TARGET): the compile settings, and the link settings of the shared library with its host libraries.
function(usbdev_harden target)
  usbdev_library_code(${target})
  set(exports ${PROJECT_SOURCE_DIR}/src/libusbdevlib.map)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    BUILD_RPATH_USE_ORIGIN ON # the path of the build folder would leave its length in the installed library
    LINKER_LANGUAGE C # the C++ driver would add libstdc++
    LINK_DEPENDS ${exports}
  )
  target_link_options(${target} PRIVATE
    LINKER:--version-script=${exports}
    # Calls inside the library call its own functions, even if the application defines functions of the same names. Data
    # is shared: if the application has its own copy of NVR_CGI, the library uses that copy.
    LINKER:-Bsymbolic-functions
    LINKER:-z,relro
    LINKER:-z,now
    LINKER:-z,noexecstack
    LINKER:--gc-sections
    $<$<CONFIG:Release>:${usbdev_small_links}>
  )
  # The library needs all three host libraries, even one of which it uses nothing.
  target_link_libraries(${target} PRIVATE -Wl,--no-as-needed vlxmlcfg vllog alsa_ctl)
  if(NOT USBDEV_SANITIZE)
    target_link_options(${target} PRIVATE LINKER:-z,defs)
  endif()
endfunction()
