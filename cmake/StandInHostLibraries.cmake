# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# If only the library is built, the host's libraries are missing. The linker gets these libraries instead: they have the
# same names and the functions that platform/ declares. They are never installed or loaded.

# stand_in(NAME HEADER): builds a shared library NAME with every function that the header declares.
function(stand_in name header)
  set(path ${PROJECT_SOURCE_DIR}/platform/${header})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${path})
  file(STRINGS ${path} functions REGEX "^int [a-zA-Z_]+\\(")
  list(TRANSFORM functions REPLACE "^int ([a-zA-Z_]+).*" "void \\1(void) {}")
  string(JOIN "\n" code ${functions} "")
  file(CONFIGURE OUTPUT stand_ins/${name}.c CONTENT "${code}")
  add_library(${name} SHARED ${CMAKE_CURRENT_BINARY_DIR}/stand_ins/${name}.c)
  set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/stand_ins)
endfunction()

stand_in(vlxmlcfg xmlcfg.h)
stand_in(vllog vllog.h)
stand_in(alsa_ctl alsa_ctl.h)

# Programs must not find them at run time.
set(CMAKE_SKIP_RPATH ON)
