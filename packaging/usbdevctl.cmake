# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# Installs usbdevctl, the script that users call, and for each shell the one that completes its commands, which it prints
# itself.
install(TARGETS usbdevctl RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR})
install(PROGRAMS ${PROJECT_SOURCE_DIR}/tools/usbdevctl/usbdevctl.sh DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME usbdevctl)

# completion(SHELL FOLDER NAME): FOLDER is where the shell looks for the scripts of all programs.
function(completion shell folder name)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/completions/${shell}/${name})
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/completions/${shell})
  add_custom_command(OUTPUT ${script} COMMAND usbdevctl completion ${shell} > ${script} DEPENDS usbdevctl VERBATIM)
  add_custom_target(completion_${shell} ALL DEPENDS ${script})
  install(FILES ${script} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder})
endfunction()

completion(bash bash-completion/completions usbdevctl)
completion(zsh zsh/site-functions _usbdevctl)
completion(fish fish/vendor_completions.d usbdevctl.fish)
