# SPDX-FileCopyrightText: 2026 The libusbdevlib authors
# SPDX-License-Identifier: Apache-2.0

# shellcheck shell=sh
# The size of the library, beside those of other libraries for devices in Debian.

compared_packages='libgpiod2 libkmod2 libudev1 libusb-1.0-0'

# size_row ARCHITECTURE TRIPLET FILE: prints the bytes of the code, of the constants, and of the whole file.
size_row() {
  name=${3##*/}
  "$2-size" -A "$3" | awk -v row="| ${name%%.so*} | $1" -v file="$(stat --format=%s "$3")" '
    { size[$1] = $2 }
    END { print row " | " size[".text"] " | " size[".rodata"] " | " file " |" }'
}

# sizes_on ARCHITECTURE PRESET TRIPLET: prints the rows of the architecture.
sizes_on() {
  folder=build/sizes/$1
  rm -rf "$folder"
  mkdir -p "$folder"
  build "$2" usbdevlib >"$folder/build.log" || { cat "$folder/build.log" >&2; exit 1; }
  foreign_apt "$1"
  # shellcheck disable=SC2086 # a list of words
  (cd "$folder" && download_for "$1" download $compared_packages)
  # The package of libgpiod also contains its C++ wrapper, which is left out.
  for package in "$folder"/*.deb; do dpkg-deb --extract "$package" "$folder"; done
  "$3-strip" -o "$folder/libusbdevlib.so" "build/$2/libusbdevlib.so"
  find "$folder" -type f -name 'lib*.so*' ! -name '*cxx*' | sort -t / -k 4 | while IFS= read -r library; do
    size_row "$1" "$3" "$library"
  done
}

sizes() {
  install_missing "$cross_packages"
  echo '| Library | Architecture | `.text` | `.rodata` | File |'
  echo '|---|---|---|---|---|'
  sizes_on amd64 release x86_64-linux-gnu
  sizes_on arm64 arm64 aarch64-linux-gnu
  sizes_on armhf armhf arm-linux-gnueabihf
}
