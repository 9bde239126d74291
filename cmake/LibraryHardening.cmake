# How the library is compiled and linked, apart from everything else in the tree: it runs inside other people's
# processes on hosts that carry no C++ run-time, exports only what is listed, and takes no chances with bad input.

# Nothing of the C++ run-time is linked, which a compiler may come without.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES "")

include(CheckCXXCompilerFlag)
# A library that waits for commands gains nothing from larger code; older compilers know no better than -Os.
check_cxx_compiler_flag(-Oz USBDEV_HAS_OZ)
set(usbdev_small_code $<IF:$<BOOL:${USBDEV_HAS_OZ}>,-Oz,-Os>)

# usbdev_library_code(TARGET): the compile settings alone, for any target that is made of the library's own sources.
function(usbdev_library_code target)
  set(optimised $<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>>)
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE
    -fno-exceptions
    -fno-rtti
    -fno-threadsafe-statics # the guards would need the C++ run-time; local statics are constants
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

# usbdev_harden(TARGET): the compile settings, and the link settings of the shared library, its host libraries included.
function(usbdev_harden target)
  usbdev_library_code(${target})
  set(exports ${PROJECT_SOURCE_DIR}/src/libusbdevlib.map)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LINKER_LANGUAGE C # the C++ driver would add libstdc++
    LINK_DEPENDS ${exports}
  )
  target_link_options(${target} PRIVATE
    LINKER:--version-script=${exports}
    # Calls inside the library reach its own functions, whatever the application defines. Data is shared: the application
    # may hold its own copy of NVR_CGI, and the library then uses that one.
    LINKER:-Bsymbolic-functions
    LINKER:-z,relro
    LINKER:-z,now
    LINKER:-z,noexecstack
    LINKER:--gc-sections
  )
  # The host libraries stay needed, also one of which nothing is used yet.
  target_link_libraries(${target} PRIVATE -Wl,--no-as-needed vlxmlcfg vllog alsa_ctl)
  if(NOT USBDEV_SANITIZE)
    target_link_options(${target} PRIVATE LINKER:-z,defs)
  endif()
endfunction()
