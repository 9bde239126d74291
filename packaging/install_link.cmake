# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# install_link(LINK TARGET): installs a relative symbolic link. Both are below the prefix, which can be chosen with
# `cmake --install`, or are whole paths.
function(install_link link target)
  install(CODE "
    get_filename_component(link \"${link}\" ABSOLUTE BASE_DIR \"\${CMAKE_INSTALL_PREFIX}\")
    get_filename_component(target \"${target}\" ABSOLUTE BASE_DIR \"\${CMAKE_INSTALL_PREFIX}\")
    get_filename_component(folder \"\${link}\" DIRECTORY)
    file(RELATIVE_PATH target \"\${folder}\" \"\${target}\")
    message(STATUS \"Installing: \$ENV{DESTDIR}\${link} -> \${target}\")
    file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${folder}\")
    file(CREATE_LINK \"\${target}\" \"\$ENV{DESTDIR}\${link}\" SYMBOLIC)
  ")
endfunction()
