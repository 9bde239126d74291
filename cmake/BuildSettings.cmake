# Language and warnings for every target; the presets add optimisation and sanitizers.
set(CMAKE_C_STANDARD 11)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_C_EXTENSIONS ON)
set(CMAKE_CXX_EXTENSIONS ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# The library and the programs lie at the top of the build folder, so that tools and tests find them at one place.
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# Whoever names no build type gets the one to install.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()
# Most of the tree is tests, and these are compiled more often than run; the library chooses for itself.
set(CMAKE_CXX_FLAGS_RELEASE "-O1 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O1 -DNDEBUG")

option(USBDEV_COVERAGE "Instrument for coverage" OFF)
set(USBDEV_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

# The presets make them errors; a compiler that nobody here has tried may warn of what it likes.
add_compile_options(-Wall -Wextra -Wconversion -Wshadow)
if(USBDEV_SANITIZE)
  add_compile_options(-fsanitize=${USBDEV_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${USBDEV_SANITIZE})
endif()
if(USBDEV_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
