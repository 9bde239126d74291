# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# Installs the reference host. Its scripts and data keep their places to each other. What is compiled is in a folder of its
# own, where no other program finds the libraries; the link "built" leads to it, as in the repository
# (host/sandbox/boxlib/layout.py).
set(host ${CMAKE_INSTALL_DATADIR}/usbdev-host)
set(built ${CMAKE_INSTALL_LIBDIR}/usbdev-host)

foreach(part demo fleet owner sandbox services share sim view web)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/host/${part} DESTINATION ${host} USE_SOURCE_PERMISSIONS
    PATTERN __pycache__ EXCLUDE
    PATTERN node_modules EXCLUDE
    PATTERN package-lock.json EXCLUDE
    REGEX "web/(CMakeLists.txt|install-libraries|package.json|[.]gitignore)$" EXCLUDE
  )
endforeach()

install(TARGETS vlxmlcfg vllog alsa_ctl orda_exec LIBRARY DESTINATION ${built})
install(TARGETS readcfg gpuinfo_app RUNTIME DESTINATION ${built})
install(PROGRAMS ${PROJECT_BINARY_DIR}/hwinfo_app DESTINATION ${built})

install_link(${host}/built ${built})
install_link(${built}/sim ${host}/sim/bin/sim)
install_link(${built}/usbdevctl ${CMAKE_INSTALL_LIBEXECDIR}/usbdevctl)
install_link(${built}/libusbdevlib.so.${PROJECT_VERSION_MAJOR} ${CMAKE_INSTALL_LIBDIR}/libusbdevlib.so.${PROJECT_VERSION_MAJOR})
install_link(${CMAKE_INSTALL_BINDIR}/usbdev-sandbox ${host}/sandbox/sandbox)
install_link(${CMAKE_INSTALL_BINDIR}/usbdev-demo ${host}/demo/demo)
install_link(${host}/services/usbdev-login-users ${host}/services/login-users)
install_link(${CMAKE_INSTALL_SBINDIR}/usbdev-login-users ${host}/view/login-users)
